#include "Duplicates.h"

#include "core/SameAddress.h"
#include "shortcuts/ShortcutFile.h"
#include "verbs/FavoritesModel.h"
#include "verbs/ListsModel.h"

#include <QHash>

#include <algorithm>

namespace Duplicates {

QList<Page> favoritePages(const FavoritesModel& favorites)
{
    QList<Page> pages;
    for (const FavoritesModel::Entry& entry : favorites.entries())
        if (!entry.folder)
            pages.append({Page::Kind::Favorite, entry.key, entry.parentKey, entry.text, QString(), entry.path});
    return pages;
}

QList<Page> listPages(const ListsModel& lists)
{
    QList<Page> pages;
    for (const PageGroups::Entry& entry : lists.entries())
        if (entry.page)
            pages.append({Page::Kind::ListPage, entry.key, entry.group, entry.title, entry.url, QString()});
    return pages;
}

void readAddresses(QList<Page>& pages)
{
    for (Page& page : pages)
        if (page.kind == Page::Kind::Favorite)
            page.address = ShortcutAddress(page.path);
}

QList<Group> find(const QList<Page>& pages, bool dropTracking)
{
    QHash<QString, qsizetype> at; // group key -> position in `groups`
    QList<Group> groups;
    for (const Page& page : pages) {
        if (page.address.trimmed().isEmpty())
            continue; // a shortcut without an address is no page
        const QString same = SameAddress::key(page.address, dropTracking);
        // Favourites are one pool; each list is a pool of its own.
        const QString pool = page.kind == Page::Kind::Favorite ? QStringLiteral("F") : u'L' + page.place;
        const QString groupKey = pool + u'\n' + same;
        const auto found = at.constFind(groupKey);
        if (found == at.cend()) {
            at.insert(groupKey, groups.size());
            groups.append({same, {page}});
        } else {
            groups[*found].pages.append(page);
        }
    }
    groups.removeIf([](const Group& group) { return group.pages.size() < 2; });
    std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
        if (a.pages.size() != b.pages.size())
            return a.pages.size() > b.pages.size();
        return a.sameAs < b.sameAs;
    });
    return groups;
}

} // namespace Duplicates
