#include "RunWatch.h"

#include "EventLog.h"
#include "settings/VantrelConf.h"
#include "core/Globals.h"

void RunWatch::tick()
{
    const Globals& g = globals();
    tick({g.RunListRunning, g.RunListName, g.RunInterval, g.RunListMulti, g.RunListLoop});
}

void RunWatch::tick(const Run& run)
{
    if (run.running == m_running)
        return;
    m_running = run.running;
    if (m_running) {
        m_completed = false;
        EventLog::write(QStringLiteral("run started: %1, every %2 s, %3, %4")
                            .arg(run.list)
                            .arg(run.intervalSeconds)
                            .arg(run.severalWindows ? QStringLiteral("in several windows") : QStringLiteral("in one window"))
                            .arg(run.loop ? QStringLiteral("in a loop") : QStringLiteral("once")));
        QString why;
        if (VantrelConf::flag(VantrelConf::kKeepScreenAwake) &&
            !m_screen.hold(QStringLiteral("A list of pages is running"), &why))
            EventLog::write(QStringLiteral("the screen cannot be kept awake: ") + why);
        return;
    }
    EventLog::write(m_completed ? QStringLiteral("run completed") : QStringLiteral("run stopped"));
    m_screen.release();
}
