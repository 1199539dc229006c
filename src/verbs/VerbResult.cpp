#include "VerbResult.h"

QString VerbResult::reason() const
{
    switch (code) {
    case Ok:
        return QString();
    case AllWindowsOpen:
        return QStringLiteral("all eight windows are open");
    case Declined:
        return QStringLiteral("the person at the screen said no");
    case NoSuchSlot:
        return QStringLiteral("there is no window %1: the windows are 1 to 8").arg(detail);
    case SlotEmpty:
        return QStringLiteral("window %1 is not open").arg(detail);
    case SlotTaken:
        return QStringLiteral("window %1 is open already").arg(detail);
    case NoSuchList:
        return QStringLiteral("there is no list named \"%1\"").arg(detail);
    case EmptyList:
        return QStringLiteral("the list \"%1\" has no pages").arg(detail);
    case BadInterval:
        return QStringLiteral("%1 seconds is no time between pages").arg(detail);
    case NotRunning:
        return QStringLiteral("no list is running");
    case NoPageThere:
        return QStringLiteral("the run has no page there");
    case NotAWebAddress:
        return QStringLiteral("\"%1\" is not a web address").arg(detail);
    case NoSuchPage:
        return QStringLiteral("the list has no page %1").arg(detail);
    case SlotOfAnotherRun:
        return QStringLiteral("window %1 belongs to another run").arg(detail);
    case NoOpenWindows:
        return QStringLiteral("no window shows a web page");
    case ListsFull:
        return QStringLiteral("the lists hold at most %1 lists and pages together").arg(detail);
    case NotTrashed:
        return QStringLiteral("%1 could not be moved to the trash").arg(detail);
    case NotSaved:
        return QStringLiteral("it could not be saved: %1").arg(detail);
    }
    return QString();
}
