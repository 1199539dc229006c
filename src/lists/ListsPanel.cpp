#include "ListsPanel.h"

#include "ListsMenu.h"
#include "ListsTree.h"
#include "RunList1.h"
#include "verbs/Verbs.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/RunError.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/WindowPlacement.h"

#include <QCheckBox>
#include <QComboBox>

#include <QFrame>
#include <QStyle>
#include <QVBoxLayout>

ListsPanel::ListsPanel(QComboBox* listNames, Verbs* verbs, SurfPanel* rows, FavoritesTree* favorites)
    : m_verbs(verbs), m_listNames(listNames)
{
    setObjectName(QStringLiteral("ListsPanel"));
    m_frame3 = new QFrame(this);
    m_frame3->setObjectName(QStringLiteral("Frame3"));
    m_tree = new KeyedTree(QStringLiteral("SSTree2"), m_frame3);
    m_tree->setAccessibleName(tr("Favorite Lists"));
    m_tree->setHeaderLabel(tr("Favorite Lists")); // what a screen reader says of the hidden header
    m_tree->setToolTip(tr("Your favourite lists: drop pages on a list, double-click a page to open it"));
    auto* layout = new QVBoxLayout(m_frame3);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);
    setUpper(m_frame3);
    m_lists = new ListsTree(m_tree, listNames, verbs, rows, favorites);
    m_menu = new ListsMenu(m_tree, m_lists);

    m_saveListBtn = new GradientButton(QStringLiteral("SaveListBtn"), QStringLiteral("Save"), this);
    m_saveListBtn->setToolTip(QStringLiteral("Select Favorite Web Sites for Buttons and Lists"));
    m_runListBtn = new GradientButton(QStringLiteral("RunListBtn"), QString(), this);
    m_runListBtn->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    m_runListBtn->setToolTip(QStringLiteral("Run Favorite List"));
    m_runListBtn->setAccessibleName(tr("Run Favorite List"));
    m_newListBtn = new GradientButton(QStringLiteral("NewListBtn"), QString(), this);
    m_newListBtn->setIcon(style()->standardIcon(QStyle::SP_FileDialogNewFolder));
    m_newListBtn->setToolTip(QStringLiteral("Create New Favorite List"));
    m_newListBtn->setAccessibleName(tr("Create New Favorite List"));
    for (GradientButton* command : {m_saveListBtn, m_runListBtn, m_newListBtn})
        addCommand(command);
    connect(m_saveListBtn, &GradientButton::clicked, m_lists, &ListsTree::SaveListBtn_Click);
    connect(m_newListBtn, &GradientButton::clicked, m_lists, &ListsTree::NewListBtn_Click);
    connect(m_runListBtn, &GradientButton::clicked, this, &ListsPanel::RunListBtn_Click);

    connect(verbs, &Verbs::runCompleted, this, &ListsPanel::runCompleted);
    connect(verbs, &Verbs::runDialogWanted, this, &ListsPanel::focusRunDialog);
    connect(verbs, &Verbs::runListTooLong, this, &ListsPanel::runListTooLong);
}

ListRun& ListsPanel::run()
{
    return m_verbs->run();
}

RunWatch* ListsPanel::runWatch() const
{
    return m_verbs->runWatch();
}

KeptPages& ListsPanel::keptPages()
{
    return m_verbs->keptPages();
}

void ListsPanel::runCompleted(Caller startedBy)
{
    // Only a person who started the run is told; nobody answers a box for a caller from outside.
    if (startedBy == Caller::Person)
        DialogService::message(QStringLiteral("    List Run Complete"));
}

void ListsPanel::runListTooLong(Caller startedBy)
{
    // A run holds 251 pages; a longer list runs its first 251, and the user is told.
    if (startedBy == Caller::Person)
        DialogService::message(QStringLiteral("Error - ") +
                               RunError(RunError::SubscriptOutOfRange).numberAndText());
}

bool ListsPanel::resumeRun(const QString& list, int interval, bool loop, bool severalWindows, bool keep,
                           int position)
{
    RunListBtn_Click();
    RunList1* dialog = runDialog();
    const int listRow = dialog->CMBLIST()->findText(list);
    const int timeRow = dialog->CMBTIME()->findData(interval / 10);
    if (listRow < 0 || timeRow < 0 || interval % 10 != 0)
        return false;
    // The dialog shows the run's choices, as if they had been chosen there.
    dialog->CMBLIST()->setCurrentIndex(listRow);
    dialog->CMBTIME()->setCurrentIndex(timeRow);
    dialog->CHKPAGE()->setChecked(severalWindows);
    dialog->CHKLOOP()->setChecked(loop);
    dialog->CHKKEEP()->setChecked(keep);
    return m_verbs->resumeRunAt(RunChoice{list, interval, loop, severalWindows, keep}, position).ok();
}

bool ListsPanel::keepingPages() const
{
    return m_runDialog && m_runDialog->CHKKEEP()->isChecked();
}

RunList1* ListsPanel::runDialog() const
{
    return m_runDialog.data();
}

bool ListsPanel::BuildRunList(const QString& upperName)
{
    bool overflow = false;
    const bool found = m_verbs->BuildRunList(upperName, &overflow);
    if (overflow)
        runListTooLong(Caller::Person);
    return found;
}

void ListsPanel::focusRunDialog()
{
    if (!m_runDialog)
        return;
    keepAboveOwner(m_runDialog, window());
    m_runDialog->show();
    m_runDialog->raise();
    m_runDialog->activateWindow();
}

void ListsPanel::RunListBtn_Click()
{
    if (globals().RunListRunning)
        m_verbs->run().stop();
    if (globals().RunListShown && m_runDialog) {
        focusRunDialog();
        return;
    }
    if (!m_runDialog)
    {
        m_runDialog = new RunList1(window(), m_verbs, m_listNames);
        connect(m_runDialog, &RunList1::helpRequested, this, &ListsPanel::helpRequested);
    }
    m_runDialog->Form_Load();
    focusRunDialog();
}

void ListsPanel::unloadRunDialog()
{
    if (m_runDialog)
        m_runDialog->close();
}
