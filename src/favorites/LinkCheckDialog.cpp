#include "LinkCheckDialog.h"

#include "core/Clock.h"
#include "core/DialogService.h"
#include "tidy/LinkChecksDue.h"
#include "tidy/PageTrash.h"
#include "verbs/Verbs.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

namespace {

constexpr int kKeyRole = Qt::UserRole;
constexpr int kVerdictRole = Qt::UserRole + 1;
using Verdict = LinkCheck::Verdict;
const QList<Verdict> kOrder = {Verdict::Dead, Verdict::Moved, Verdict::FailingForNow, Verdict::Fine, Verdict::NotChecked};

} // namespace

LinkCheckDialog::LinkCheckDialog(Verbs* verbs, const Scope& scope, QWidget* parent)
    : QDialog(parent), m_verbs(verbs), m_scope(scope), m_check(new LinkCheck(this))
{
    setObjectName(QStringLiteral("LinkCheckDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    const QString what = scope.lists ? (scope.under.isEmpty() ? QStringLiteral("all lists") : QStringLiteral("the list ") + scope.under)
                                     : (scope.under.isEmpty() ? QStringLiteral("Favorites") : QStringLiteral("Favorites/") + scope.under);
    setWindowTitle(QStringLiteral("Check Links: ") + what);

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("LinkCheckStatus"));
    m_status->setWordWrap(true);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("LinkCheckProgress"));
    m_progress->setAccessibleName(QStringLiteral("Links checked"));
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setObjectName(QStringLiteral("CancelCheckBtn"));
    m_cancel->setToolTip(QStringLiteral("Stop asking; what has answered stays"));
    connect(m_cancel, &QPushButton::clicked, m_check, &LinkCheck::cancel);
    m_askAgain = new QCheckBox(QStringLiteral("Ask again about links checked in the last day"), this);
    m_askAgain->setObjectName(QStringLiteral("AskAgainChk"));
    connect(m_askAgain, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            start(true);
    });

    m_tree = new QTreeWidget(this);
    m_tree->setObjectName(QStringLiteral("LinkResults"));
    m_tree->setAccessibleName(QStringLiteral("What each link answered"));
    m_tree->setHeaderLabels({QStringLiteral("Page"), QStringLiteral("Where"), QStringLiteral("Address"),
                             QStringLiteral("Answer")});
    m_tree->setColumnWidth(0, 220);
    m_tree->setColumnWidth(1, 160);
    m_tree->setColumnWidth(2, 300);
    connect(m_tree, &QTreeWidget::itemChanged, this, &LinkCheckDialog::updateButtons);

    m_update = new QPushButton(QStringLiteral("Update Checked Moved Pages"), this);
    m_update->setObjectName(QStringLiteral("UpdateMovedBtn"));
    m_update->setToolTip(QStringLiteral("Point the checked pages that moved for good to their new addresses"));
    connect(m_update, &QPushButton::clicked, this, &LinkCheckDialog::updateMoved);
    m_trash = new QPushButton(QStringLiteral("Send Checked Dead to Trash"), this);
    m_trash->setObjectName(QStringLiteral("TrashDeadBtn"));
    m_trash->setToolTip(QStringLiteral("Checked dead favourites go to the desktop's trash, checked dead list pages out of "
                                       "their list"));
    connect(m_trash, &QPushButton::clicked, this, &LinkCheckDialog::trashDead);
    m_keep = new QPushButton(QStringLiteral("Keep as a List"), this);
    m_keep->setObjectName(QStringLiteral("KeepListBtn"));
    m_keep->setToolTip(QStringLiteral("Keep the pages that did not answer fine as a new list, to look at later"));
    connect(m_keep, &QPushButton::clicked, this, &LinkCheckDialog::keepAsList);
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    close->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("CloseBtn"));
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto* top = new QHBoxLayout;
    top->addWidget(m_progress, 1);
    top->addWidget(m_cancel);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_update);
    buttons->addWidget(m_trash);
    buttons->addWidget(m_keep);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_status);
    layout->addLayout(top);
    layout->addWidget(m_askAgain);
    layout->addWidget(m_tree, 1);
    layout->addLayout(buttons);
    resize(900, 520);

    connect(m_check, &LinkCheck::checked, this, [this](const LinkCheck::Outcome& outcome) {
        LinkChecksDue::remember(m_checks, outcome);
        showOutcome(outcome, false);
    });
    connect(m_check, &LinkCheck::progress, this, [this](int done, int total) {
        m_progress->setMaximum(std::max(total, 1));
        m_progress->setValue(done);
        m_status->setText(QStringLiteral("Asked %1 of %2 links...").arg(done).arg(total));
    });
    connect(m_check, &LinkCheck::finished, this, &LinkCheckDialog::finished);
    connect(&m_reader, &QFutureWatcher<QList<Duplicates::Page>>::finished, this, &LinkCheckDialog::pagesRead);
    start(false);
}

LinkCheckDialog::~LinkCheckDialog()
{
    // Closed while asking: the check ends here, while the dialog is whole, so that what answered is
    // remembered; the check itself would otherwise end as the dialog's children go.
    m_check->cancel();
    m_reader.waitForFinished();
}

LinkCheckDialog* LinkCheckDialog::showFor(Verbs* verbs, const Scope& scope, QWidget* parent)
{
    for (LinkCheckDialog* dialog : parent->findChildren<LinkCheckDialog*>(QString(), Qt::FindDirectChildrenOnly))
        if (dialog->m_scope.lists == scope.lists && dialog->m_scope.under == scope.under) {
            dialog->raise();
            dialog->activateWindow();
            return dialog;
        }
    auto* dialog = new LinkCheckDialog(verbs, scope, parent);
    dialog->show();
    return dialog;
}

void LinkCheckDialog::start(bool askAgain)
{
    if (m_reading) {
        m_askAgainPending = m_askAgainPending || askAgain;
        return;
    }
    m_check->cancel();
    m_askAgainPending = askAgain;
    m_reading = true;
    m_tree->clear();
    m_groups.clear();
    m_pages.clear();
    m_remembered = 0;
    m_status->setText(QStringLiteral("Reading the pages' addresses..."));
    QList<Duplicates::Page> pages;
    const QList<Duplicates::Page> all = m_scope.lists ? Duplicates::listPages(*m_verbs->lists())
                                                      : Duplicates::favoritePages(*m_verbs->favorites());
    for (const Duplicates::Page& page : all)
        if (m_scope.under.isEmpty() || page.place == m_scope.under ||
            (!m_scope.lists && page.place.startsWith(m_scope.under + u'/')))
            pages.append(page);
    m_reader.setFuture(QtConcurrent::run([pages]() mutable {
        Duplicates::readAddresses(pages);
        return pages;
    }));
    updateButtons();
}

void LinkCheckDialog::pagesRead()
{
    m_reading = false;
    const bool askAgain = m_askAgainPending;
    m_askAgainPending = false;
    QList<LinkCheck::Link> links;
    for (const Duplicates::Page& page : m_reader.result()) {
        if (page.address.trimmed().isEmpty())
            continue;
        m_pages.insert(page.key, page);
        links.append({page.key, page.address});
    }
    m_checks = LinkChecksFile::read(LinkChecksFile::path());
    const LinkChecksDue::Split split = LinkChecksDue::split(links, m_checks, Clock::localNow().toUTC(), askAgain);
    m_remembered = int(split.remembered.size());
    for (const LinkCheck::Outcome& outcome : split.remembered)
        showOutcome(outcome, true);
    if (links.isEmpty()) {
        m_status->setText(QStringLiteral("There are no pages here to check."));
        updateButtons();
        return;
    }
    m_progress->setMaximum(std::max<int>(int(split.due.size()), 1));
    m_progress->setValue(0);
    if (split.due.isEmpty()) {
        finished(false);
        return;
    }
    m_check->start(split.due);
    updateButtons();
}

QTreeWidgetItem* LinkCheckDialog::groupOf(Verdict verdict)
{
    if (QTreeWidgetItem* group = m_groups.value(int(verdict)))
        return group;
    // Groups stand in the order of kOrder, whatever order their first answers came in.
    int at = 0;
    for (const Verdict before : kOrder) {
        if (before == verdict)
            break;
        if (m_groups.contains(int(before)))
            ++at;
    }
    auto* group = new QTreeWidgetItem;
    m_tree->insertTopLevelItem(at, group);
    group->setFirstColumnSpanned(true);
    QFont bold = group->font(0);
    bold.setBold(true);
    group->setFont(0, bold);
    group->setData(0, kVerdictRole, int(verdict));
    group->setExpanded(verdict != Verdict::Fine);
    m_groups.insert(int(verdict), group);
    return group;
}

void LinkCheckDialog::showOutcome(const LinkCheck::Outcome& outcome, bool remembered)
{
    const Duplicates::Page page = m_pages.value(outcome.key);
    QSignalBlocker quiet(m_tree);
    QTreeWidgetItem* group = groupOf(outcome.verdict);
    auto* item = new QTreeWidgetItem(group);
    item->setText(0, page.title);
    item->setText(1, PageTrash::whereOf(page));
    item->setText(2, outcome.verdict == Verdict::Moved ? outcome.address + QStringLiteral("  →  ") + outcome.newAddress
                                                      : outcome.address);
    QString answer = outcome.reason;
    if (remembered)
        answer += QStringLiteral(" (checked %1)").arg(outcome.checked.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")));
    item->setText(3, answer);
    item->setToolTip(2, item->text(2));
    item->setData(0, kKeyRole, outcome.key);
    item->setData(0, kVerdictRole, int(outcome.verdict));
    item->setData(2, kKeyRole, outcome.newAddress);
    if (outcome.verdict == Verdict::Dead || outcome.verdict == Verdict::Moved)
        item->setCheckState(0, Qt::Unchecked); // nothing changes without a person's choice
    group->setText(0, QStringLiteral("%1 (%2)").arg(LinkCheck::verdictName(outcome.verdict)).arg(group->childCount()));
}

void LinkCheckDialog::finished(bool cancelled)
{
    LinkChecksFile::write(LinkChecksFile::path(), m_checks);
    m_progress->setValue(m_progress->maximum());
    m_status->setText((cancelled ? QStringLiteral("Cancelled. ") : QStringLiteral("Done. ")) + summary());
    updateButtons();
}

QString LinkCheckDialog::summary() const
{
    QStringList parts;
    for (const Verdict verdict : kOrder)
        if (const QTreeWidgetItem* group = m_groups.value(int(verdict)))
            parts << QStringLiteral("%1: %2").arg(LinkCheck::verdictName(verdict)).arg(group->childCount());
    QString text = parts.isEmpty() ? QStringLiteral("No page answered.") : parts.join(QStringLiteral(", ")) + u'.';
    if (m_remembered)
        text += QStringLiteral(" %1 checked within the last day are shown as they answered then.").arg(m_remembered);
    return text;
}

bool LinkCheckDialog::isFavorite(const QString& key) const
{
    return m_pages.value(key).kind == Duplicates::Page::Kind::Favorite;
}

QList<QTreeWidgetItem*> LinkCheckDialog::checkedIn(Verdict verdict) const
{
    QList<QTreeWidgetItem*> items;
    if (const QTreeWidgetItem* group = m_groups.value(int(verdict)))
        for (int i = 0; i < group->childCount(); ++i)
            if (group->child(i)->checkState(0) == Qt::Checked)
                items << group->child(i);
    return items;
}

void LinkCheckDialog::updateMoved()
{
    const QList<QTreeWidgetItem*> moved = checkedIn(Verdict::Moved);
    if (moved.isEmpty() ||
        !DialogService::question(QStringLiteral("Do you want to point %1 to %2?")
                                     .arg(moved.size() == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(moved.size()),
                                          moved.size() == 1 ? QStringLiteral("its new address") : QStringLiteral("their new addresses"))))
        return;
    QStringList failed;
    for (QTreeWidgetItem* item : moved) {
        const QString key = item->data(0, kKeyRole).toString();
        const QString address = item->data(2, kKeyRole).toString();
        const VerbResult result = isFavorite(item->data(0, kKeyRole).toString()) ? m_verbs->moveFavorite(key, address) : m_verbs->moveListPage(key, address);
        if (!result.ok()) {
            failed << result.reason();
            continue;
        }
        QSignalBlocker quiet(m_tree);
        item->setData(0, Qt::CheckStateRole, QVariant()); // done: nothing more to choose
        item->setText(2, address);
        item->setText(3, QStringLiteral("pointed to its new address"));
    }
    if (!failed.isEmpty())
        DialogService::message(PageTrash::failedText(failed));
    m_status->setText(QStringLiteral("Done. ") + summary());
    updateButtons();
}

void LinkCheckDialog::trashDead()
{
    const QList<QTreeWidgetItem*> dead = checkedIn(Verdict::Dead);
    if (dead.isEmpty())
        return;
    QList<PageTrash::Item> items;
    for (const QTreeWidgetItem* item : dead) {
        const QString key = item->data(0, kKeyRole).toString();
        items.append({key, isFavorite(key)});
    }
    if (!DialogService::question(PageTrash::question(items)))
        return;
    const PageTrash::Outcome outcome = PageTrash::takeAway(m_verbs, items);
    for (QTreeWidgetItem* item : dead)
        if (outcome.taken.contains(item->data(0, kKeyRole).toString())) {
            QTreeWidgetItem* group = item->parent();
            delete item;
            group->setText(0, QStringLiteral("%1 (%2)").arg(LinkCheck::verdictName(Verdict::Dead)).arg(group->childCount()));
        }
    if (!outcome.failed.isEmpty())
        DialogService::message(PageTrash::failedText(outcome.failed));
    m_status->setText(QStringLiteral("Done. ") + summary());
    updateButtons();
}

void LinkCheckDialog::keepAsList()
{
    QList<ListPageState> pages;
    for (const Verdict verdict : {Verdict::Dead, Verdict::Moved, Verdict::FailingForNow})
        if (const QTreeWidgetItem* group = m_groups.value(int(verdict)))
            for (int i = 0; i < group->childCount(); ++i) {
                const Duplicates::Page page = m_pages.value(group->child(i)->data(0, kKeyRole).toString());
                if (!page.address.isEmpty())
                    pages.append({page.title.isEmpty() ? page.address : page.title, page.address});
            }
    if (pages.isEmpty()) {
        DialogService::message(QStringLiteral("Every page answered fine: there is nothing to keep."));
        return;
    }
    QString made;
    const VerbResult result =
        m_verbs->makeList(QStringLiteral("Link check ") + Clock::localNow().toString(QStringLiteral("yyyy-MM-dd HH:mm")), pages, &made);
    DialogService::message(result.ok() ? QStringLiteral("The pages that need a look are kept as the list \"%1\".").arg(made)
                                       : QStringLiteral("The pages could not be kept as a list: %1.").arg(result.reason()));
}

void LinkCheckDialog::updateButtons()
{
    const bool running = busy();
    m_cancel->setEnabled(m_check->running());
    m_update->setEnabled(!running && !checkedIn(Verdict::Moved).isEmpty());
    m_trash->setEnabled(!running && !checkedIn(Verdict::Dead).isEmpty());
    m_keep->setEnabled(!running && m_tree->topLevelItemCount() > 0);
}
