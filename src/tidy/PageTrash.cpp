#include "PageTrash.h"

#include "verbs/Verbs.h"

namespace PageTrash {

QString counted(qsizetype n, const QString& one, const QString& many)
{
    return n == 1 ? QStringLiteral("1 ") + one : QStringLiteral("%1 %2").arg(n).arg(many);
}

QString whereOf(const Duplicates::Page& page)
{
    if (page.kind == Duplicates::Page::Kind::ListPage)
        return QStringLiteral("List: ") + page.place;
    return page.place.isEmpty() ? QStringLiteral("Favorites") : QStringLiteral("Favorites/") + page.place;
}

QString question(const QList<Item>& items)
{
    qsizetype favorites = 0;
    for (const Item& item : items)
        favorites += item.favorite ? 1 : 0;
    const qsizetype listPages = items.size() - favorites;
    QStringList parts;
    if (favorites)
        parts << QStringLiteral("send %1 to the trash")
                     .arg(counted(favorites, QStringLiteral("favourite"), QStringLiteral("favourites")));
    if (listPages)
        parts << QStringLiteral("take %1 out of their lists").arg(counted(listPages, QStringLiteral("page"), QStringLiteral("pages")));
    return QStringLiteral("Do you want to ") + parts.join(QStringLiteral(" and ")) + u'?';
}

Outcome takeAway(Verbs* verbs, const QList<Item>& items)
{
    Outcome outcome;
    for (const Item& item : items) {
        const VerbResult result = item.favorite ? verbs->trashFavorite(item.key) : verbs->removeListPage(item.key);
        if (result.ok())
            outcome.taken << item.key;
        else
            outcome.failed << result.reason();
    }
    return outcome;
}

QString failedText(const QStringList& failed)
{
    return QStringLiteral("Not everything could be done: ") + failed.join(QStringLiteral("; ")) + u'.';
}

} // namespace PageTrash
