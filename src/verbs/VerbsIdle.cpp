// The verbs of a window with no schedule running in it: what its screen's setting says it shows.
#include "Verbs.h"

#include "RunRoster.h"
#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "core/Globals.h"
#include "core/WebAddress.h"
#include "screens/ScreenPlacer.h"
#include "watch/EventLog.h"

namespace {
bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}
} // namespace

SlotIdle::Show Verbs::idleShowOf(int slot) const
{
    for (const SlotPlace& place : m_pool->placer()->places())
        if (place.slot == slot)
            return place.idle.show;
    return SlotIdle::Show::Desktop;
}

bool Verbs::slotOwnedByRun(int slot) const
{
    return m_runs->owning(slot) != nullptr;
}

VerbResult Verbs::showWhenIdle(int slot)
{
    if (!isSlot(slot))
        return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
    if (m_runs->owning(slot))
        return VerbResult::failed(VerbResult::SlotOfAnotherRun, QString::number(slot));
    SlotIdle idle;
    for (const SlotPlace& place : m_pool->placer()->places())
        if (place.slot == slot)
            idle = place.idle;
    BrowserWindow* window = m_pool->ie(slot);
    switch (idle.show) {
    case SlotIdle::Show::Desktop:
        return VerbResult::done();
    case SlotIdle::Show::Black:
        if (!window || globals().WindowUrl[slot].isEmpty())
            return VerbResult::failed(VerbResult::SlotEmpty, QString::number(slot));
        window->setBlackedOut(true);
        window->setVisible(true);
        EventLog::write(QStringLiteral("nothing scheduled: window %1 shows black").arg(slot));
        noteChange();
        return VerbResult::done();
    case SlotIdle::Show::Page: {
        const std::optional<QString> address = WebAddress::fromOutside(idle.page);
        if (!address)
            return VerbResult::failed(VerbResult::NotAWebAddress, idle.page);
        EventLog::write(QStringLiteral("nothing scheduled: window %1 shows %2").arg(slot).arg(*address));
        return openPage(*address, QString(), OpenWhere::Slot, slot, Caller::Outside);
    }
    }
    return VerbResult::done();
}
