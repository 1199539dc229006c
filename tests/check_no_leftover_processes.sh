#!/usr/bin/env bash
# Runs after every other test: no process that a test of this run started (the program, its
# browser engine's helpers) may still be running. Each test carries VANTREL_TEST_RUN=MARK in its
# environment, and so does every process it starts. Leftovers are named, ended, and fail the run.
# Usage: check_no_leftover_processes.sh MARK
set -uo pipefail
mark="VANTREL_TEST_RUN=$1"

leftovers() {
    for environ in /proc/[0-9]*/environ; do
        pid=${environ#/proc/}
        pid=${pid%/environ}
        [ "$pid" = "$$" ] && continue
        if tr '\0' '\n' <"$environ" 2>/dev/null | grep -qxF "$mark"; then
            echo "$pid"
        fi
    done
}

# The engine's helpers of the last test may take a moment to end.
for _ in $(seq 1 100); do
    found=$(leftovers)
    [ -z "$found" ] && { echo "no process of this test run is left"; exit 0; }
    sleep 0.1
done
echo "processes of this test run are still running:"
for pid in $found; do
    echo "  $pid $(tr '\0' ' ' <"/proc/$pid/cmdline" 2>/dev/null)"
done
kill -KILL $found 2>/dev/null
exit 1
