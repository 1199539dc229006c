#pragma once

#include "Duplicates.h"

#include <QStringList>

class Verbs;

// What the dialogs that tidy the favourites say of the pages they take away, and the taking:
// a favourite goes to the desktop's trash, a list's page out of its list, through the verbs.
namespace PageTrash {

struct Item
{
    QString key;
    bool favorite = true;
};

// "1 favourite", "3 favourites".
QString counted(qsizetype n, const QString& one, const QString& many);
// Where a page is: "Favorites", "Favorites/News/Daily" or "List: Wall".
QString whereOf(const Duplicates::Page& page);
// "Do you want to send 2 favourites to the trash and take 1 page out of their lists?"
QString question(const QList<Item>& items);
// Takes each away; the keys of those taken, and the reasons of those that could not be.
struct Outcome
{
    QStringList taken;
    QStringList failed;
};
Outcome takeAway(Verbs* verbs, const QList<Item>& items);
// "Not everything could be done: ...", for the reasons of what failed.
QString failedText(const QStringList& failed);

} // namespace PageTrash
