#pragma once

#include "core/RunError.h"
#include "settings/ListPagesFile.h"

#include <QObject>

class ListsModel;

// The settings of the lists' pages as the program holds them while it runs, kept in
// "ListPages.conf". They follow the lists: a list renamed takes its pages' settings along, and a
// page that is no longer in its list (its list file edited by hand) loses them when the lists are
// read again. The lists themselves are never touched.
class PageSettingsStore : public QObject
{
    Q_OBJECT

public:
    PageSettingsStore(ListsModel* lists, QObject* parent);

    // The page's settings; empty ones when it has none. `list` in any case.
    PageSettings of(const QString& list, const QString& address) const;
    bool has(const QString& list, const QString& address) const { return !of(list, address).isEmpty(); }
    // Gives the page these settings (empty ones take them away) and writes the file.
    RunError set(const QString& list, const QString& address, const PageSettings& settings);
    const QList<ListPagesFile::Entry>& entries() const { return m_entries; }

    // Reads the file again, leaving out the settings of pages the lists no longer hold.
    void reload();

signals:
    // The settings of a page changed (`address` empty: of every page of `list`; both empty: all).
    void changed(const QString& list, const QString& address);

private:
    qsizetype find(const QString& list, const QString& address) const;
    void listRenamed(const QString& oldName, const QString& newName);
    RunError save();

    ListsModel* m_lists;
    QList<ListPagesFile::Entry> m_entries;
};
