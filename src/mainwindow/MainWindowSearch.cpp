// The search fields above the Favorites tree, the lists tree and the history tree, over one index
// of the three, and Ctrl+F that puts the cursor in the one of the tab in front.
#include "Vantrel1.h"

#include "favorites/FavoritesPanel.h"
#include "favorites/FavoritesTree.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "search/SearchKeeper.h"
#include "widgets/KeyedTree.h"
#include "widgets/TreeSearch.h"

#include <QShortcut>
#include <QTabWidget>

namespace {
constexpr int kFavoritesTab = 1;
constexpr int kListsTab = 2;
constexpr int kHistoryTab = 3;
} // namespace

void Vantrel1::setUpSearch()
{
    m_searchKeeper = new SearchKeeper(m_verbs, this);
    m_favoritesSearch = new TreeSearch(SSTree1(), SearchIndex::Tree::Favorites, m_searchKeeper, QStringLiteral("Favorites"));
    m_favoritesSearch->setDragOut([this](KeyedNode* node) { favorites()->dragOut(node); });
    m_listsSearch = new TreeSearch(m_listsPanel->SSTree2(), SearchIndex::Tree::Lists, m_searchKeeper, QStringLiteral("Lists"));
    m_historySearch =
        new TreeSearch(m_historyPanel->SSTree3(), SearchIndex::Tree::History, m_searchKeeper, QStringLiteral("History"));
    m_historySearch->setDragOut([this](KeyedNode* node) { m_historyPanel->history()->dragOut(node); });
    auto* find = new QShortcut(QKeySequence::Find, this);
    find->setObjectName(QStringLiteral("FindShortcut"));
    connect(find, &QShortcut::activated, this, &Vantrel1::focusSearch);
}

void Vantrel1::focusSearch()
{
    switch (m_tabStrip->currentIndex()) {
    case kListsTab:
        m_listsSearch->focusField();
        return;
    case kHistoryTab:
        m_historySearch->focusField();
        return;
    case kFavoritesTab:
        break;
    default:
        m_tabStrip->setCurrentIndex(kFavoritesTab);
        break;
    }
    m_favoritesSearch->focusField();
}
