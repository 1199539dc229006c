#include "DuplicatesDialog.h"

#include "core/DialogService.h"
#include "tidy/PageTrash.h"
#include "settings/VantrelConf.h"
#include "verbs/Verbs.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

constexpr int kKindRole = Qt::UserRole;
constexpr int kKeyRole = Qt::UserRole + 1;

} // namespace

DuplicatesDialog::DuplicatesDialog(Verbs* verbs, QWidget* parent) : QDialog(parent), m_verbs(verbs)
{
    setObjectName(QStringLiteral("DuplicatesDialog"));
    setWindowTitle(QStringLiteral("Find Duplicates"));
    setAttribute(Qt::WA_DeleteOnClose);

    // The setting of More Options, said here without the name of the dialog it is in.
    m_tracking = new QCheckBox(QStringLiteral("The same page whatever its tracking parameters (utm_source, fbclid, ...)"),
                               this);
    m_tracking->setObjectName(QStringLiteral("TrackingChk"));
    m_tracking->setToolTip(VantrelConf::find(VantrelConf::kDuplicatesIgnoreTracking)->toolTip);
    m_tracking->setChecked(VantrelConf::flag(VantrelConf::kDuplicatesIgnoreTracking));
    connect(m_tracking, &QCheckBox::toggled, this, [this](bool on) {
        VantrelConf::setValue(VantrelConf::kDuplicatesIgnoreTracking, on ? 1 : 0);
        search();
    });

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("DuplicatesStatus"));
    m_status->setWordWrap(true);

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("DuplicatesTree"));
    m_tree->setAccessibleName(QStringLiteral("Pages kept more than once"));
    m_tree->setHeaderLabels({QStringLiteral("Keep"), QStringLiteral("Where"), QStringLiteral("Address")});
    m_tree->header()->setSectionResizeMode(QHeaderView::Interactive);
    m_tree->setColumnWidth(0, 260);
    m_tree->setColumnWidth(1, 220);
    m_tree->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &DuplicatesDialog::updateButtons);
    connect(m_tree, &QTreeWidget::itemChanged, this, &DuplicatesDialog::updateButtons);

    m_keepOnly = new QPushButton(QStringLiteral("Keep Only This One"), this);
    m_keepOnly->setObjectName(QStringLiteral("KeepOnlyBtn"));
    m_keepOnly->setToolTip(QStringLiteral("Keep the selected copy and uncheck the others of its page"));
    connect(m_keepOnly, &QPushButton::clicked, this, &DuplicatesDialog::keepOnlySelected);
    m_keepAll = new QPushButton(QStringLiteral("Keep All"), this);
    m_keepAll->setObjectName(QStringLiteral("KeepAllBtn"));
    m_keepAll->setToolTip(QStringLiteral("Check every copy of the selected page again"));
    connect(m_keepAll, &QPushButton::clicked, this, &DuplicatesDialog::keepAllOfSelected);
    m_trash = new QPushButton(QStringLiteral("Send Unchecked to Trash"), this);
    m_trash->setObjectName(QStringLiteral("TrashBtn"));
    m_trash->setToolTip(QStringLiteral("Unchecked favourites go to the desktop's trash, unchecked list pages out of "
                                       "their lists"));
    connect(m_trash, &QPushButton::clicked, this, &DuplicatesDialog::trashUnchecked);
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    close->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("CloseBtn"));
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_keepOnly);
    buttons->addWidget(m_keepAll);
    buttons->addWidget(m_trash);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tracking);
    layout->addWidget(m_status);
    layout->addWidget(m_tree, 1);
    layout->addLayout(buttons);
    resize(820, 480);

    connect(&m_watcher, &QFutureWatcher<QList<Duplicates::Group>>::finished, this, [this] {
        m_searching = false;
        if (m_again) {
            m_again = false;
            search();
            return;
        }
        showGroups(m_watcher.result());
    });
    search();
}

DuplicatesDialog* DuplicatesDialog::showFor(Verbs* verbs, QWidget* parent)
{
    auto* dialog = parent->findChild<DuplicatesDialog*>(QString(), Qt::FindDirectChildrenOnly);
    if (!dialog)
        dialog = new DuplicatesDialog(verbs, parent);
    else
        dialog->search();
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return dialog;
}

void DuplicatesDialog::search()
{
    if (m_searching) {
        m_again = true;
        return;
    }
    m_searching = true;
    QList<Duplicates::Page> pages = Duplicates::favoritePages(*m_verbs->favorites());
    const int favorites = int(pages.size());
    pages += Duplicates::listPages(*m_verbs->lists());
    m_status->setText(QStringLiteral("Looking through %1 and %2...")
                          .arg(PageTrash::counted(favorites, QStringLiteral("favourite"), QStringLiteral("favourites")),
                               PageTrash::counted(int(pages.size()) - favorites, QStringLiteral("list page"),
                                       QStringLiteral("list pages"))));
    m_tree->clear();
    updateButtons();
    const bool dropTracking = m_tracking->isChecked();
    m_watcher.setFuture(QtConcurrent::run([pages, dropTracking]() mutable {
        Duplicates::readAddresses(pages);
        return Duplicates::find(pages, dropTracking);
    }));
}

void DuplicatesDialog::showGroups(const QList<Duplicates::Group>& groups)
{
    QSignalBlocker quiet(m_tree);
    m_tree->clear();
    int copies = 0;
    for (const Duplicates::Group& group : groups) {
        auto* top = new QTreeWidgetItem(m_tree);
        top->setText(0, QStringLiteral("%1 (%2 copies)").arg(group.sameAs).arg(group.pages.size()));
        top->setFirstColumnSpanned(true);
        QFont bold = top->font(0);
        bold.setBold(true);
        top->setFont(0, bold);
        top->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        for (const Duplicates::Page& page : group.pages) {
            auto* copy = new QTreeWidgetItem(top);
            copy->setText(0, page.title);
            copy->setText(1, PageTrash::whereOf(page));
            copy->setText(2, page.address);
            copy->setToolTip(2, page.address);
            copy->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            copy->setCheckState(0, Qt::Checked);
            copy->setData(0, kKindRole, int(page.kind));
            copy->setData(0, kKeyRole, page.key);
        }
        copies += int(group.pages.size());
    }
    m_tree->expandAll();
    m_status->setText(groups.isEmpty()
                          ? QStringLiteral("No page is kept more than once.")
                          : QStringLiteral("%1 kept more than once, %2 in all. Every copy is checked to be kept: "
                                           "choose the copy to keep of each page, then send the others to the trash.")
                                .arg(PageTrash::counted(int(groups.size()), QStringLiteral("page is"), QStringLiteral("pages are")),
                                     PageTrash::counted(copies, QStringLiteral("copy"), QStringLiteral("copies"))));
    updateButtons();
    emit searched();
}

QTreeWidgetItem* DuplicatesDialog::selectedGroup() const
{
    const QList<QTreeWidgetItem*> selected = m_tree->selectedItems();
    if (selected.isEmpty())
        return nullptr;
    QTreeWidgetItem* item = selected.first();
    return item->parent() ? item->parent() : item;
}

void DuplicatesDialog::keepOnlySelected()
{
    const QList<QTreeWidgetItem*> selected = m_tree->selectedItems();
    if (selected.isEmpty() || !selected.first()->parent())
        return;
    QTreeWidgetItem* keep = selected.first();
    QTreeWidgetItem* group = keep->parent();
    for (int i = 0; i < group->childCount(); ++i)
        group->child(i)->setCheckState(0, group->child(i) == keep ? Qt::Checked : Qt::Unchecked);
}

void DuplicatesDialog::keepAllOfSelected()
{
    if (QTreeWidgetItem* group = selectedGroup())
        for (int i = 0; i < group->childCount(); ++i)
            group->child(i)->setCheckState(0, Qt::Checked);
}

void DuplicatesDialog::trashUnchecked()
{
    QList<QTreeWidgetItem*> gone;
    for (int g = 0; g < m_tree->topLevelItemCount(); ++g) {
        QTreeWidgetItem* group = m_tree->topLevelItem(g);
        int kept = 0;
        for (int i = 0; i < group->childCount(); ++i) {
            if (group->child(i)->checkState(0) == Qt::Checked)
                ++kept;
            else
                gone << group->child(i);
        }
        if (kept == 0) {
            m_tree->setCurrentItem(group);
            DialogService::message(QStringLiteral("Keep at least one copy of %1: check the copy to keep.")
                                       .arg(group->child(0)->text(2)));
            return;
        }
    }
    if (gone.isEmpty())
        return;
    QList<PageTrash::Item> items;
    for (const QTreeWidgetItem* item : gone)
        items.append({item->data(0, kKeyRole).toString(),
                      item->data(0, kKindRole).toInt() == int(Duplicates::Page::Kind::Favorite)});
    if (!DialogService::question(PageTrash::question(items)))
        return;
    const PageTrash::Outcome outcome = PageTrash::takeAway(m_verbs, items);
    if (!outcome.failed.isEmpty())
        DialogService::message(PageTrash::failedText(outcome.failed));
    search();
}

void DuplicatesDialog::updateButtons()
{
    const QList<QTreeWidgetItem*> selected = m_tree->selectedItems();
    const bool copy = !selected.isEmpty() && selected.first()->parent();
    m_keepOnly->setEnabled(copy);
    m_keepAll->setEnabled(!selected.isEmpty());
    bool anyUnchecked = false;
    for (int g = 0; g < m_tree->topLevelItemCount() && !anyUnchecked; ++g)
        for (int i = 0; i < m_tree->topLevelItem(g)->childCount(); ++i)
            anyUnchecked = anyUnchecked || m_tree->topLevelItem(g)->child(i)->checkState(0) != Qt::Checked;
    m_trash->setEnabled(anyUnchecked);
}
