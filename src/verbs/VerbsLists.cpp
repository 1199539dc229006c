// The verbs that make and change the favourite lists.
#include "Verbs.h"

#include "ListsModel.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "core/WebAddress.h"

QString Verbs::openWindowsListName(const QDateTime& moment)
{
    return QStringLiteral("Open Windows ") + moment.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

VerbResult Verbs::saveOpenWindowsAsList(QString* made)
{
    QList<WindowState> pages;
    for (const WindowState& window : windows())
        if (WebAddress::isWebAddress(window.address))
            pages.append(window);
    if (pages.isEmpty())
        return VerbResult::failed(VerbResult::NoOpenWindows);
    // One record for the list, one for each page, as the list file keeps them.
    if (m_lists->count() + 1 + pages.size() > kListCapacity - 1)
        return VerbResult::failed(VerbResult::ListsFull, QString::number(kListCapacity - 1));
    const QString name = m_lists->addNumberedList(openWindowsListName(Clock::localNow()));
    if (name.isEmpty())
        return VerbResult::failed(VerbResult::ListsFull, QString::number(kListCapacity - 1));
    for (const WindowState& page : pages) {
        // A page still without a title of its own is kept under its address, as a dropped one is.
        const QString title = page.title.trimmed().isEmpty() ? page.address : page.title;
        m_lists->addPage(name, title, page.address);
    }
    globals().ListsChanged = true;
    if (made)
        *made = name;
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::removeListPage(const QString& key)
{
    if (!m_lists->removePage(key))
        return VerbResult::failed(VerbResult::NoSuchPage, key);
    globals().ListsChanged = true;
    noteChange();
    return VerbResult::done();
}
