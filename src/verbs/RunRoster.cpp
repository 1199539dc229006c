#include "RunRoster.h"

#include "core/Globals.h"
#include "watch/EventLog.h"

#include <QMetaObject>

#include <algorithm>

namespace {

bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}

QString slotList(const QList<int>& windows)
{
    QStringList numbers;
    for (int slot : windows)
        numbers << QString::number(slot);
    return numbers.join(QStringLiteral(", "));
}

} // namespace

RunRoster::RunRoster(RunHost* host, TimedRun* first, QObject* parent) : QObject(parent), m_host(host), m_first(first)
{
}

TimedRun* RunRoster::byId(int id) const
{
    return id == 1 ? m_first : m_others.value(id);
}

TimedRun* RunRoster::owning(int slot) const
{
    for (TimedRun* run : m_others)
        if (run->ownSlots().contains(slot))
            return run;
    return globals().RunListRunning && m_first->owns(slot) ? m_first : nullptr;
}

QSet<int> RunRoster::reserved() const
{
    QSet<int> kept;
    for (const TimedRun* run : m_others)
        for (int slot : run->ownSlots())
            kept.insert(slot);
    return kept;
}

QSet<int> RunRoster::owned() const
{
    QSet<int> owned = reserved();
    if (globals().RunListRunning)
        for (int slot = 1; slot <= kWindowSlots; ++slot)
            if (m_first->owns(slot))
                owned.insert(slot);
    return owned;
}

int RunRoster::nextUnreserved(int slot) const
{
    const QSet<int> kept = reserved();
    for (int step = 1; step <= kWindowSlots; ++step) {
        const int candidate = (std::max(0, slot) + step - 1) % kWindowSlots + 1;
        if (!kept.contains(candidate))
            return candidate;
    }
    return 0; // every window is kept by a run in other windows
}

VerbResult RunRoster::startInOtherWindows(const RunChoice& choice, const QList<int>& windows, Caller caller, int* id)
{
    if (windows.isEmpty())
        return VerbResult::failed(VerbResult::NoSuchSlot, QStringLiteral("(none)"));
    const QSet<int> taken = owned();
    QList<int> own;
    for (int slot : windows) {
        if (!isSlot(slot))
            return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
        if (taken.contains(slot))
            return VerbResult::failed(VerbResult::SlotOfAnotherRun, QString::number(slot));
        if (!own.contains(slot))
            own.append(slot);
    }
    if (choice.intervalSeconds <= 0)
        return VerbResult::failed(VerbResult::BadInterval, QString::number(choice.intervalSeconds));
    bool known = false;
    for (const QString& name : m_host->listNames())
        known = known || name.toUpper() == choice.list.toUpper();
    if (!known)
        return VerbResult::failed(VerbResult::NoSuchList, choice.list);
    if (m_host->listPages(choice.list.toUpper()).isEmpty())
        return VerbResult::failed(VerbResult::EmptyList, choice.list);
    auto* run = new TimedRun(m_host, this, own);
    const int number = m_nextId++;
    m_others.insert(number, run);
    connect(run, &TimedRun::changed, this, &RunRoster::changed);
    connect(run, &TimedRun::completed, this, [this, number] {
        // Once through, a run in other windows ends: its windows are free again.
        QMetaObject::invokeMethod(this, [this, number] { stop(number); }, Qt::QueuedConnection);
    });
    const VerbResult started = run->start(choice, caller);
    if (id)
        *id = number;
    EventLog::write(QStringLiteral("run %1 started in windows %2: %3").arg(number).arg(slotList(own), choice.list));
    emit changed();
    return started;
}

VerbResult RunRoster::resumeInOtherWindows(const RunChoice& choice, const QList<int>& windows, int position)
{
    int id = 0;
    const VerbResult started = startInOtherWindows(choice, windows, Caller::Outside, &id);
    if (!started.ok())
        return started;
    TimedRun* run = m_others.value(id);
    run->goOnAt(position);
    return started;
}

VerbResult RunRoster::stop(int id)
{
    TimedRun* run = m_others.take(id);
    if (!run)
        return VerbResult::failed(VerbResult::NotRunning);
    run->stop();
    run->deleteLater();
    EventLog::write(QStringLiteral("run %1 stopped").arg(id));
    emit changed();
    return VerbResult::done();
}





QList<RunState> RunRoster::others() const
{
    QList<RunState> runs;
    for (auto it = m_others.cbegin(); it != m_others.cend(); ++it) {
        RunState r;
        it.value()->fill(r);
        r.id = it.key();
        runs.append(r);
    }
    return runs;
}

void RunRoster::tickOthers()
{
    for (TimedRun* run : std::as_const(m_others))
        run->tick();
}

void RunRoster::refreshOthers()
{
    for (TimedRun* run : std::as_const(m_others))
        run->refreshPageSettings();
}
