#include "TreeSearch.h"

#include "KeyedTree.h"
#include "search/SearchKeeper.h"

#include <QApplication>
#include <QBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTreeWidget>

namespace {
constexpr int kKeyRole = Qt::UserRole;
} // namespace

TreeSearch::TreeSearch(KeyedTree* tree, SearchIndex::Tree which, SearchKeeper* keeper, const QString& name)
    : QObject(tree), m_tree(tree), m_which(which), m_keeper(keeper)
{
    QWidget* holder = tree->parentWidget();
    m_field = new QLineEdit(holder);
    m_field->setObjectName(name + QStringLiteral("Search"));
    m_field->setPlaceholderText(QStringLiteral("Search %1 (Ctrl+F)").arg(name));
    m_field->setAccessibleName(QStringLiteral("Search %1").arg(name));
    m_field->setToolTip(QStringLiteral("Any words of the pages' names and addresses, in any order; Escape gives the "
                                       "tree back"));
    m_results = new QTreeWidget(holder);
    m_results->setObjectName(name + QStringLiteral("Results"));
    m_results->setAccessibleName(QStringLiteral("Pages found in %1").arg(name));
    m_results->setToolTip(QStringLiteral("Enter or a double-click opens a page; drag one where you would drag it from "
                                         "the tree; Escape gives the tree back"));
    // The tab is narrow: the name has the room, where it is comes beside it, its address in its tip.
    m_results->setHeaderLabels({QStringLiteral("Page"), QStringLiteral("Where")});
    m_results->setRootIsDecorated(false);
    m_results->setUniformRowHeights(true);
    m_results->setAllColumnsShowFocus(true);
    m_results->header()->setStretchLastSection(false);
    m_results->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_results->header()->setSectionResizeMode(1, QHeaderView::Interactive);
    m_results->setColumnWidth(1, 110);
    m_results->hide();
    // In the tree's place: the field above it, the list where it stands.
    if (auto* layout = qobject_cast<QBoxLayout*>(holder->layout())) {
        const int at = layout->indexOf(tree);
        layout->insertWidget(at, m_field);
        layout->insertWidget(at + 2, m_results, layout->stretch(at + 1));
    }
    connect(m_field, &QLineEdit::textChanged, this, &TreeSearch::search);
    connect(m_results, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { open(item); });
    connect(keeper, &SearchKeeper::changed, this, [this] {
        m_lastQuery.clear(); // a new index: the old matches are no more
        if (!m_field->text().trimmed().isEmpty())
            search();
    });
    m_field->installEventFilter(this);
    m_results->installEventFilter(this);
    m_results->viewport()->installEventFilter(this);
}

void TreeSearch::focusField()
{
    m_field->setFocus(Qt::ShortcutFocusReason);
    m_field->selectAll();
}

void TreeSearch::search()
{
    const QString query = m_field->text();
    if (query.trimmed().isEmpty()) {
        m_lastQuery.clear();
        m_results->clear();
        m_results->hide();
        m_tree->show();
        return;
    }
    const std::shared_ptr<const SearchIndex> index = m_keeper->index();
    const bool narrows = !m_lastQuery.isEmpty() && query.startsWith(m_lastQuery);
    std::vector<int> matched;
    const SearchIndex::Result result = index->find(query, m_which, kShown, narrows ? &m_lastMatched : nullptr, &matched);
    m_lastQuery = query;
    m_lastMatched = std::move(matched);

    m_results->setUpdatesEnabled(false);
    m_results->clear();
    QList<QTreeWidgetItem*> items;
    items.reserve(result.best.size());
    for (const int i : result.best) {
        const SearchIndex::Entry& entry = index->entry(i);
        // A favourite at the top of the folder is in "Favorites".
        const QString place = entry.place.isEmpty() && m_which == SearchIndex::Tree::Favorites
                                  ? QStringLiteral("Favorites")
                                  : entry.place;
        auto* item = new QTreeWidgetItem({entry.name, place});
        item->setData(0, kKeyRole, entry.key);
        const QString tip = entry.name + u'\n' + entry.address + u'\n' + place;
        item->setToolTip(0, tip);
        item->setToolTip(1, tip);
        items.append(item);
    }
    m_results->addTopLevelItems(items);
    if (!items.isEmpty())
        m_results->setCurrentItem(items.first());
    m_results->setUpdatesEnabled(true);
    m_field->setToolTip(result.found > kShown ? QStringLiteral("%1 pages found, the best %2 shown").arg(result.found).arg(kShown)
                                              : QStringLiteral("%1 pages found").arg(result.found));
    m_tree->hide();
    m_results->show();
}

void TreeSearch::open(QTreeWidgetItem* item)
{
    if (!item)
        return;
    KeyedNode* node = m_tree->node(item->data(0, kKeyRole).toString());
    if (!node)
        return; // gone since it was found; the next index will not hold it
    // As a person's double-click on the node: a click, then the double-click.
    m_tree->setCurrentItem(node);
    emit m_tree->nodeClicked(node);
    emit m_tree->nodeDoubleClicked(node);
}

void TreeSearch::backToTree()
{
    m_field->clear();
    m_tree->setFocus(Qt::OtherFocusReason);
}

bool TreeSearch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Escape && !m_field->text().isEmpty()) {
            backToTree();
            return true;
        }
        if (watched == m_field && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
            open(m_results->currentItem());
            return true;
        }
        if (watched == m_field && (key->key() == Qt::Key_Down || key->key() == Qt::Key_Up) && m_results->isVisible()) {
            m_results->setFocus(Qt::OtherFocusReason);
            QApplication::sendEvent(m_results, event);
            return true;
        }
        return false;
    }
    if (watched != m_results->viewport())
        return false;
    // A drag from the list is a drag of the page's node out of the tree.
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        m_pressed = mouse->button() == Qt::LeftButton;
        m_pressAt = mouse->position().toPoint();
    } else if (event->type() == QEvent::MouseButtonRelease) {
        m_pressed = false;
    } else if (event->type() == QEvent::MouseMove && m_pressed) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if ((mouse->position().toPoint() - m_pressAt).manhattanLength() < QApplication::startDragDistance())
            return false;
        m_pressed = false;
        QTreeWidgetItem* item = m_results->itemAt(m_pressAt);
        KeyedNode* node = item ? m_tree->node(item->data(0, kKeyRole).toString()) : nullptr;
        if (node && m_dragOut) {
            m_dragOut(node);
            return true;
        }
    }
    return false;
}
