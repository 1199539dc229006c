#include "KeyedTree.h"

#include "core/PageText.h"
#include "core/WebAddress.h"

#include "ControlDrag.h"
#include "DroppedLink.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QStyle>

namespace {

QIcon imageIcon(int image)
{
    static const QIcon closed = QApplication::style()->standardIcon(QStyle::SP_DirClosedIcon);
    static const QIcon page = QApplication::style()->standardIcon(QStyle::SP_FileLinkIcon);
    static const QIcon open = QApplication::style()->standardIcon(QStyle::SP_DirOpenIcon);
    switch (image) {
    case KeyedTree::ClosedFolder:
        return closed;
    case KeyedTree::OpenFolder:
        return open;
    default:
        return page;
    }
}

// The image with a small round mark in its lower right corner, drawn at each size the image has.
QIcon markedIcon(int image)
{
    QIcon marked;
    const QIcon base = imageIcon(image);
    for (int size : {16, 22, 32}) {
        QPixmap pixmap = base.pixmap(size, size);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal d = size * 0.5;
        painter.setPen(QPen(Qt::white, size / 12.0));
        painter.setBrush(QColor(0x1f, 0x6f, 0xd0));
        painter.drawEllipse(QRectF(size - d - 0.5, size - d - 0.5, d, d));
        painter.end();
        marked.addPixmap(pixmap);
    }
    return marked;
}

} // namespace

KeyedNode::KeyedNode(const QString& key, const QString& text, int image)
    : m_key(key), m_shownText(text), m_image(image)
{
    setText(0, text);
    setIcon(0, imageIcon(image));
}

QVariant KeyedNode::data(int column, int role) const
{
    if (column == 0 && role == Qt::DisplayRole)
        return m_displayed;
    if (column == 0 && role == Qt::EditRole)
        return m_text;
    return QTreeWidgetItem::data(column, role);
}

void KeyedNode::setData(int column, int role, const QVariant& value)
{
    if (column != 0 || (role != Qt::DisplayRole && role != Qt::EditRole)) {
        QTreeWidgetItem::setData(column, role, value);
        return;
    }
    m_text = value.toString();
    m_displayed = boundedPageText(m_text);
    if (m_displayed.size() < m_text.size())
        m_displayed += QChar(0x2026); // it goes on
    emitDataChanged();
}

void KeyedNode::setImage(int image)
{
    m_image = image;
    setIcon(0, m_marked ? markedIcon(image) : imageIcon(image));
}

void KeyedNode::setMarked(bool marked)
{
    if (marked == m_marked)
        return;
    m_marked = marked;
    setImage(m_image);
}

KeyedTree::KeyedTree(const QString& name, QWidget* parent) : QTreeWidget(parent)
{
    setObjectName(name);
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DropOnly);
    header()->setStretchLastSection(true);
    connect(this, &QTreeWidget::itemExpanded, this, [](QTreeWidgetItem* item) {
        auto* node = static_cast<KeyedNode*>(item);
        if (node->image() == ClosedFolder)
            node->setImage(OpenFolder);
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [](QTreeWidgetItem* item) {
        auto* node = static_cast<KeyedNode*>(item);
        if (node->image() == OpenFolder)
            node->setImage(ClosedFolder);
    });
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        auto* node = static_cast<KeyedNode*>(item);
        const QString old = node->shownText();
        if (node->nodeText() == old)
            return;
        node->acceptEditedText();
        emit labelEdited(node, old, node->nodeText());
    });
    connect(this, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { emit nodeClicked(static_cast<KeyedNode*>(item)); });
    connect(this, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { emit nodeDoubleClicked(static_cast<KeyedNode*>(item)); });
}

KeyedNode* KeyedTree::addNode(const QString& parentKey, const QString& key, const QString& text, int image)
{
    if (m_byKey.contains(key))
        return nullptr;
    KeyedNode* parent = nullptr;
    if (!parentKey.isEmpty()) {
        parent = m_byKey.value(parentKey);
        if (!parent)
            return nullptr;
    }
    auto* node = new KeyedNode(key, text, image);
    if (m_labelEdit)
        node->setFlags(node->flags() | Qt::ItemIsEditable);
    if (parent)
        parent->addChild(node);
    else if (m_bulk > 0)
        m_detachedTop.append(node);
    else
        addTopLevelItem(node);
    m_byKey.insert(key, node);
    m_order.append(node);
    return node;
}

KeyedNode* KeyedTree::nodeAt(int index) const
{
    return index >= 1 && index <= m_order.size() ? m_order[index - 1] : nullptr;
}

int KeyedTree::indexOf(const KeyedNode* node) const
{
    const qsizetype i = m_order.indexOf(const_cast<KeyedNode*>(node));
    return i < 0 ? 0 : int(i + 1);
}

void KeyedTree::forget(QTreeWidgetItem* item)
{
    for (int i = 0; i < item->childCount(); ++i)
        forget(item->child(i));
    auto* node = static_cast<KeyedNode*>(item);
    m_byKey.remove(node->key());
    m_order.removeOne(node);
    if (m_dropHighlight == node)
        m_dropHighlight = nullptr;
}

void KeyedTree::removeNode(KeyedNode* node)
{
    if (!node)
        return;
    forget(node);
    delete node; // takes its children along
}

bool KeyedTree::rekey(KeyedNode* node, const QString& newKey)
{
    if (node->key() == newKey)
        return true;
    if (m_byKey.contains(newKey))
        return false;
    m_byKey.remove(node->key());
    node->setKeyUnchecked(newKey);
    m_byKey.insert(newKey, node);
    return true;
}

void KeyedTree::setLabelEditEnabled(bool on)
{
    m_labelEdit = on;
    setEditTriggers(on ? QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked
                       : QAbstractItemView::NoEditTriggers);
}

KeyedTree::BulkInsert::BulkInsert(KeyedTree* tree) : m_tree(tree)
{
    if (m_tree->m_bulk++ > 0)
        return;
    m_tree->setUpdatesEnabled(false);
    while (m_tree->topLevelItemCount() > 0)
        m_tree->m_detachedTop.append(m_tree->takeTopLevelItem(0));
}

KeyedTree::BulkInsert::~BulkInsert()
{
    if (--m_tree->m_bulk > 0)
        return;
    m_tree->addTopLevelItems(m_tree->m_detachedTop);
    m_tree->m_detachedTop.clear();
    m_tree->setUpdatesEnabled(true);
}

void KeyedTree::clearNodes()
{
    qDeleteAll(m_detachedTop);
    m_detachedTop.clear();
    m_byKey.clear();
    m_order.clear();
    m_dropHighlight = nullptr;
    clear();
}

KeyedNode* KeyedTree::nodeAtPoint(const QPoint& viewportPos) const
{
    return static_cast<KeyedNode*>(itemAt(viewportPos));
}

void KeyedTree::setDropHighlight(KeyedNode* node)
{
    m_dropHighlight = node;
    if (node)
        setCurrentItem(node);
}

bool KeyedTree::acceptDrag(QDropEvent* event)
{
    const QMimeData* data = event->mimeData();
    if (!data) {
        event->ignore();
        return false;
    }
    if (!ControlDrag::sourceTag(data).isEmpty()) {
        event->acceptProposedAction();
        return true;
    }
    // From another program only a web address is taken, and never taken away from it: a copy.
    if (!WebAddress::startsWithHttp(DroppedLink::read(data).text) ||
        !(event->possibleActions() & Qt::CopyAction)) {
        event->ignore();
        return false;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    return true;
}

void KeyedTree::dragEnterEvent(QDragEnterEvent* event)
{
    acceptDrag(event);
}

void KeyedTree::dragMoveEvent(QDragMoveEvent* event)
{
    acceptDrag(event);
}

void KeyedTree::dropEvent(QDropEvent* event)
{
    if (!acceptDrag(event))
        return;
    const QMimeData* data = event->mimeData();
    const QPoint pos = event->position().toPoint();
    const QString tag = ControlDrag::sourceTag(data);
    if (!tag.isEmpty()) {
        emit controlDropped(tag, pos);
        return;
    }
    if (m_manyLinks) {
        const QStringList addresses = DroppedLink::webLinks(data);
        if (addresses.size() > 1) {
            emit linksDropped(addresses, pos);
            return;
        }
    }
    const DroppedLink::Link link = DroppedLink::read(data);
    emit textDropped(link.text, link.title, pos);
}

void KeyedTree::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Delete && currentItem()) {
        emit deleteRequested(static_cast<KeyedNode*>(currentItem()));
        return;
    }
    // Shift+F10 opens the menu as the Menu key does, as on every desktop.
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(), QCursor::pos(), event->modifiers());
        contextMenuEvent(&menu);
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

void KeyedTree::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Mouse) {
        const QPoint pos = viewport()->mapFrom(this, event->pos());
        emit menuRequested(nodeAtPoint(pos), viewport()->mapToGlobal(pos));
        return;
    }
    // From the keyboard the menu belongs to the current node, and opens beside it.
    auto* node = static_cast<KeyedNode*>(currentItem());
    QRect at = node ? visualItemRect(node) : QRect();
    if (!at.isValid() || !viewport()->rect().intersects(at))
        at = QRect(viewport()->rect().topLeft(), QSize(1, 1));
    emit menuRequested(node, viewport()->mapToGlobal(QPoint(at.left() + 16, at.bottom())));
}

void KeyedTree::mousePressEvent(QMouseEvent* event)
{
    QTreeWidget::mousePressEvent(event);
    emit mousePressed(event->position().toPoint(), event->button());
}

void KeyedTree::mouseMoveEvent(QMouseEvent* event)
{
    QTreeWidget::mouseMoveEvent(event);
    emit mouseMoved(event->position().toPoint());
}

void KeyedTree::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeWidget::mouseReleaseEvent(event);
    emit mouseReleased();
}
