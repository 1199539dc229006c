#pragma once

#include <QList>
#include <QString>

class FavoritesModel;
class ListsModel;

// The same page kept more than once: favourites whose addresses are the same page (as
// core/SameAddress says), and pages of one list that are the same page under two spellings. A
// page in a list and a favourite of the same page are no duplicate: a list is a rotation of pages
// that are often favourites too, and two lists may well show the same page.
namespace Duplicates {

struct Page
{
    enum class Kind { Favorite, ListPage };
    Kind kind = Kind::Favorite;
    QString key;     // the favourite's key in the model, or the list page's key
    QString place;   // where it is: the favourite's folder ("" at the top), or the list's name
    QString title;
    QString address; // as it is kept
    QString path;    // the shortcut file (favourites)

    bool operator==(const Page&) const = default;
};

struct Group
{
    QString sameAs; // the one spelling of the page
    QList<Page> pages;
};

// The favourites of the model with their folders and the files to read their addresses from;
// addresses still empty (read them with readAddresses, away from the window's thread).
QList<Page> favoritePages(const FavoritesModel& favorites);
// Every page of the lists, with its list.
QList<Page> listPages(const ListsModel& lists);
// Reads each favourite's whole address from its file.
void readAddresses(QList<Page>& pages);

// The groups of two or more, most copies first, then by the page's spelling; within a group the
// pages in the order given. Favourites group among themselves, a list's pages within their list.
QList<Group> find(const QList<Page>& pages, bool dropTracking);

} // namespace Duplicates
