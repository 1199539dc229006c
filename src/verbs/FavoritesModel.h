#pragma once

#include "shortcuts/FavoritesWalk.h"

#include <QHash>
#include <QObject>

// The user's Favorites folder as the program holds it: its folders and shortcut files, each found
// by its key (its path below the Favorites folder, without the shortcut's ".url"), with its text
// and its full path on disk. Read by a walk of the folder, changed as shortcuts are written and
// moved to the trash. No widget: the Favorites tree shows it and follows it.
class FavoritesModel : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        QString key;
        QString parentKey; // "" at the top
        QString text;
        QString path; // the folder, or the shortcut file as it lies on disk
        bool folder = false;
    };

    using QObject::QObject;

    // The walk over the folder: every folder below it, breadth first, with its shortcuts. What the
    // model holds does not change until takeWalk().
    void walk();
    // The entries from the walk: the folders, then each folder's shortcuts, then those at the top.
    void takeWalk();
    // Both: the Favorites folder read again.
    void rebuild();
    // The temporary files that interrupted saves of shortcuts left in the folders last walked.
    QStringList takeLeftovers();

    // A shortcut file `fileName` written into the folder `parentKey` ("" for the top); false when
    // its key is taken or its folder is not there.
    bool addShortcut(const QString& parentKey, const QString& fileName);
    // Takes the entry and everything below it out; false when there is none.
    bool remove(const QString& key);

    const QList<Entry>& entries() const { return m_entries; }
    const Entry* find(const QString& key) const;

signals:
    void reset();
    void added(const QString& key);
    void removed(const QString& key);
    // The shortcut of that key points elsewhere now (its file was rewritten).
    void addressChanged(const QString& key);

private:
    // One entry: with `child`, under `parentKey` with the given key and text; without, at the top,
    // where key and text are both `parentKey`.
    bool addEntry(const QString& parentKey, const QString& text, const QString& key, bool folder, bool child,
                  const QString& fileName = QString());

    QList<Entry> m_entries;
    QHash<QString, qsizetype> m_index;
    FavoritesWalk::Result m_hold; // what walk() found
    QStringList m_leftovers;
};
