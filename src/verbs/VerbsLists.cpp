// The verbs that make and change the favourite lists.
#include "Verbs.h"

#include "ListsModel.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "core/WebAddress.h"

#include <QSet>

QString Verbs::openWindowsListName(const QDateTime& moment)
{
    return QStringLiteral("Open Windows ") + moment.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

VerbResult Verbs::saveOpenWindowsAsList(QString* made)
{
    QList<ListPageState> pages;
    for (const WindowState& window : windows())
        if (WebAddress::isWebAddress(window.address))
            // A page still without a title of its own is kept under its address, as a dropped one is.
            pages.append({window.title.trimmed().isEmpty() ? window.address : window.title, window.address});
    if (pages.isEmpty())
        return VerbResult::failed(VerbResult::NoOpenWindows);
    return makeList(openWindowsListName(Clock::localNow()), pages, made);
}

VerbResult Verbs::makeList(const QString& base, const QList<ListPageState>& pages, QString* made)
{
    QSet<QString> addresses;
    int distinct = 0;
    for (const ListPageState& page : pages)
        if (!addresses.contains(page.address)) {
            addresses.insert(page.address);
            ++distinct;
        }
    // One record for the list, one for each page, as the list file keeps them.
    if (m_lists->count() + 1 + distinct > kListCapacity - 1)
        return VerbResult::failed(VerbResult::ListsFull, QString::number(kListCapacity - 1));
    const QString name = m_lists->addNumberedList(base);
    if (name.isEmpty())
        return VerbResult::failed(VerbResult::ListsFull, QString::number(kListCapacity - 1));
    for (const ListPageState& page : pages)
        m_lists->addPage(name, page.title, page.address);
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

VerbResult Verbs::moveListPage(const QString& key, const QString& address)
{
    if (!WebAddress::isWebAddress(address))
        return VerbResult::failed(VerbResult::NotAWebAddress, address);
    if (!m_lists->setPageAddress(key, address))
        return VerbResult::failed(VerbResult::NoSuchPage, key);
    globals().ListsChanged = true;
    noteChange();
    return VerbResult::done();
}
