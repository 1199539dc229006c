#include "SearchKeeper.h"

#include "shortcuts/ShortcutFile.h"
#include "verbs/FavoritesModel.h"
#include "verbs/HistoryModel.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"

#include <QFileInfo>
#include <QtConcurrent/QtConcurrentRun>

namespace {
// A burst of changes (an import, a refresh, a run's pages) costs one new index.
constexpr int kSettleMs = 300;
} // namespace

SearchKeeper::SearchKeeper(Verbs* verbs, QObject* parent)
    : QObject(parent), m_verbs(verbs), m_index(std::make_shared<SearchIndex>())
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    connect(&m_settle, &QTimer::timeout, this, &SearchKeeper::build);
    FavoritesModel* favorites = verbs->favorites();
    connect(favorites, &FavoritesModel::reset, this, &SearchKeeper::somethingChanged);
    connect(favorites, &FavoritesModel::added, this, &SearchKeeper::somethingChanged);
    connect(favorites, &FavoritesModel::removed, this, &SearchKeeper::somethingChanged);
    connect(favorites, &FavoritesModel::addressChanged, this, &SearchKeeper::somethingChanged);
    for (PageGroups* groups : {static_cast<PageGroups*>(verbs->lists()), static_cast<PageGroups*>(verbs->history())}) {
        connect(groups, &PageGroups::reset, this, &SearchKeeper::somethingChanged);
        connect(groups, &PageGroups::groupAdded, this, &SearchKeeper::somethingChanged);
        connect(groups, &PageGroups::pageAdded, this, &SearchKeeper::somethingChanged);
        connect(groups, &PageGroups::pageRemoved, this, &SearchKeeper::somethingChanged);
        connect(groups, &PageGroups::pageAddressChanged, this, &SearchKeeper::somethingChanged);
    }
    connect(verbs->lists(), &ListsModel::listRenamed, this, &SearchKeeper::somethingChanged);
    connect(verbs->lists(), &ListsModel::titleChanged, this, &SearchKeeper::somethingChanged);
    connect(&m_watcher, &QFutureWatcher<Made>::finished, this, [this] {
        Made made = m_watcher.result();
        m_index = std::move(made.index);
        m_addresses = std::move(made.addresses);
        m_building = false;
        emit changed();
        if (m_again) {
            m_again = false;
            build();
        }
    });
}

SearchKeeper::~SearchKeeper()
{
    m_watcher.waitForFinished();
}

void SearchKeeper::somethingChanged()
{
    m_settle.start();
}

void SearchKeeper::rebuildNow()
{
    m_settle.stop();
    build();
}

void SearchKeeper::build()
{
    if (m_building) {
        m_again = true;
        return;
    }
    m_building = true;
    // What the models hold now, copied on this thread; the files are read on the other.
    QList<SearchIndex::Entry> entries;
    QStringList paths;
    for (const FavoritesModel::Entry& entry : m_verbs->favorites()->entries())
        if (!entry.folder) {
            entries.append({SearchIndex::Tree::Favorites, entry.key, entry.text, QString(), entry.parentKey, 0});
            paths.append(entry.path);
        }
    const auto pagesOf = [&entries](const PageGroups& groups, SearchIndex::Tree tree) {
        qint64 order = 0;
        for (const PageGroups::Entry& entry : groups.entries())
            if (entry.page)
                entries.append({tree, entry.key, entry.title, entry.url, entry.group, ++order});
    };
    pagesOf(*m_verbs->lists(), SearchIndex::Tree::Lists);
    pagesOf(*m_verbs->history(), SearchIndex::Tree::History);
    for (SearchIndex::Entry& entry : entries)
        if (entry.tree == SearchIndex::Tree::Lists)
            entry.recency = 0; // a list's order says nothing of what is recent
    m_watcher.setFuture(QtConcurrent::run([entries = std::move(entries), paths, known = m_addresses]() mutable {
        Made made;
        for (qsizetype i = 0; i < paths.size(); ++i) {
            const QString& path = paths.at(i);
            const QDateTime modified = QFileInfo(path).lastModified();
            const auto before = known.constFind(path);
            Read read;
            if (before != known.cend() && before->modified == modified && modified.isValid()) {
                read = *before;
            } else {
                read.modified = modified;
                read.address = ShortcutAddress(path);
            }
            entries[i].address = read.address;
            made.addresses.insert(path, read);
        }
        made.index = std::make_shared<const SearchIndex>(std::move(entries));
        return made;
    }));
}
