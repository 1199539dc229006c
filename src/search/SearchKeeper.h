#pragma once

#include "SearchIndex.h"

#include <QDateTime>
#include <QFutureWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <memory>

class Verbs;

// Keeps one search index of the three trees in step with the Favorites, the lists and the
// history as the verbs hold them: a change (a person's, a door's, or what the folder watch brings
// in) makes it again a moment later, away from the window's thread, and the new index takes the
// old one's place whole. The favourites' addresses are read from their files; a file read before
// and not changed since is not read again.
class SearchKeeper : public QObject
{
    Q_OBJECT

public:
    explicit SearchKeeper(Verbs* verbs, QObject* parent = nullptr);
    ~SearchKeeper() override;

    // The index as it is now (empty until the first one is made); it never changes once handed out.
    std::shared_ptr<const SearchIndex> index() const { return m_index; }
    // Makes the index again now rather than a moment after the last change.
    void rebuildNow();
    // Whether a new index is being made or waits to be.
    bool busy() const { return m_settle.isActive() || m_building; }

signals:
    // A new index took the old one's place.
    void changed();

private:
    struct Read
    {
        QDateTime modified;
        QString address;
    };
    using Addresses = QHash<QString, Read>; // by the shortcut file's path
    struct Made
    {
        std::shared_ptr<const SearchIndex> index;
        Addresses addresses;
    };

    void somethingChanged();
    void build();

    Verbs* m_verbs;
    std::shared_ptr<const SearchIndex> m_index;
    Addresses m_addresses;
    QTimer m_settle;
    QFutureWatcher<Made> m_watcher;
    bool m_building = false; // until the new index has taken the old one's place
    bool m_again = false;
};
