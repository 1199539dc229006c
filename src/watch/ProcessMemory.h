#pragma once

#include <QDateTime>
#include <QtGlobal>

// The memory a process holds in RAM now (VmRSS of /proc/<pid>/status), in bytes; 0 when the
// process is gone or not to be read.
namespace ProcessMemory {

qint64 residentBytes(qint64 pid);

} // namespace ProcessMemory

// When a page whose process has grown past the limit is loaded again, from looks at its size. A
// page hidden between its shows (a kept page) is loaded again at once, so that it comes back
// fresh, but once only until it has been shown again: a page that takes that much again at once
// is not loaded round and round out of sight. A page that is always shown is loaded again once it
// has stayed over the limit for a while, so that a short peak does not cost a reload.
class PageMemoryGuard
{
public:
    enum class Verdict {
        Fine,      // within the limit (or no limit)
        OverLimit, // over it from this look on: worth a line in the log
        StillOver, // over it, nothing to do yet
        Reload,    // load the page again now
    };

    static constexpr int kShownOverLimitSeconds = 300;

    // A look at the page's process: `bytes` it holds now, the `limit` (0: none), whether its
    // window is `hidden` now.
    Verdict look(qint64 bytes, qint64 limit, bool hidden, const QDateTime& now);
    // The window shows another page, or a new one: nothing of the old page counts.
    void reset() { *this = PageMemoryGuard(); }

private:
    QDateTime m_overSince; // while over the limit
    bool m_reloadedWhileHidden = false;
};
