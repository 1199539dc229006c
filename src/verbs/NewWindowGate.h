#pragma once

// Decides which requests for a new window that pages make by themselves (window.open from a
// script, not a click of the user on a link) go on to the New button's path. A page that opens
// fifty windows at once while the eight slots are taken would otherwise put the "Maximum is 8"
// question on screen fifty times: once a request of a burst has reached the limit, and while that
// question is on screen, the page's further requests of the same burst are dropped. A burst ends
// when no page has asked for a window for a second. The user's own clicks always go through.
class NewWindowGate
{
public:
    static constexpr double kBurstSeconds = 1.0;

    // Whether the request, made at `now` (seconds), goes on. A request that goes on must be
    // followed by opened() once the New button's path has returned.
    bool admit(bool userInitiated, double now);

    // The New button's path returned at `now`; `atLimit` when all eight slots were taken, so that it
    // asked the question (or reused the last window) instead of opening a window.
    void opened(bool atLimit, double now);

    bool opening() const { return m_opening; }

private:
    bool m_opening = false;
    bool m_limitReached = false;
    double m_lastRequest = -1;
};
