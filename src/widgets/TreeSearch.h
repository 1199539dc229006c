#pragma once

#include "search/SearchIndex.h"

#include <QObject>
#include <QPoint>

#include <functional>
#include <vector>

class KeyedNode;
class KeyedTree;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;
class SearchKeeper;

// The search field above one of the three trees: as a person types, the tree gives way to a flat
// list of the pages whose names and addresses hold every word typed, best first, each with where it
// is (its folder, list or window). Enter or a double-click opens a page as a double-click on the
// tree does, a drag from the list is a drag from the tree, and Escape empties the field and gives
// the tree back as it was, its open folders open. The pages come from the one index of the three
// trees (SearchKeeper); a keystroke that adds letters looks only among what matched before.
class TreeSearch : public QObject
{
    Q_OBJECT

public:
    // `name` ("Favorites", "Lists", "History") names the controls: FavoritesSearch, FavoritesResults.
    TreeSearch(KeyedTree* tree, SearchIndex::Tree which, SearchKeeper* keeper, const QString& name);

    QLineEdit* field() const { return m_field; }
    QTreeWidget* results() const { return m_results; }
    // Puts the cursor in the field, all of its text chosen.
    void focusField();
    // How a page of the list is dragged out: as its node is dragged out of the tree (none: the tree
    // has no drag out, nor has the list).
    void setDragOut(std::function<void(KeyedNode* node)> drag) { m_dragOut = std::move(drag); }

    // The most results shown; more are counted in the field's tool tip.
    static constexpr int kShown = 200;

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void search();
    void open(QTreeWidgetItem* item);
    void backToTree();

    KeyedTree* m_tree;
    SearchIndex::Tree m_which;
    SearchKeeper* m_keeper;
    QLineEdit* m_field;
    QTreeWidget* m_results;
    std::function<void(KeyedNode*)> m_dragOut;
    // What the last keystroke found, so that the next one that adds letters looks only there.
    QString m_lastQuery;
    std::vector<int> m_lastMatched;
    QPoint m_pressAt;
    bool m_pressed = false;
};
