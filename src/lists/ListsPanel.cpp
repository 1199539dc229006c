#include "ListsPanel.h"

#include "ListsMenu.h"
#include "ListsTree.h"
#include "RunList1.h"
#include "additions/EventLog.h"
#include "additions/RunWatch.h"
#include "additions/VantrelConf.h"
#include "browser/WebForm1.h"
#include "core/Clock.h"
#include "browser/SurfPanel.h"
#include "browser/Vantrel1.h"
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

ListsPanel::ListsPanel(QComboBox* listNames, Vantrel1* main) : m_main(main), m_runWatch(new RunWatch(this))
{
    setObjectName(QStringLiteral("ListsPanel"));
    m_frame3 = new QFrame(this);
    m_frame3->setObjectName(QStringLiteral("Frame3"));
    m_tree = new KeyedTree(QStringLiteral("SSTree2"), m_frame3);
    m_tree->setToolTip(tr("Your favourite lists: drop pages on a list, double-click a page to open it"));
    auto* layout = new QVBoxLayout(m_frame3);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);
    setUpper(m_frame3);
    m_lists = new ListsTree(m_tree, listNames, main);
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

    m_run.openPage = [this, main](bool multi) {
        if (showKeptPage())
            return;
        SurfPanel* surf = main->surf();
        surf->RunNavigating = true;
        main->NewBtnAction(multi);
        surf->RunNavigating = false;
        m_kept.loaded(m_run.RunPos, globals().WindowIndex, nowSeconds());
    };
    m_run.showComplete = [this] {
        m_runWatch->completed();
        DialogService::message(QStringLiteral("    List Run Complete"));
    };
    m_run.focusDialog = [this] { focusRunDialog(); };
    // A looping run with all eight windows open goes back to its first page.
    connect(main->surf(), &SurfPanel::runPositionResetRequested, this, [this] { m_run.restart(); });
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
    dialog->CMBLIST()->setCurrentIndex(listRow);
    dialog->CMBTIME()->setCurrentIndex(timeRow);
    dialog->CHKPAGE()->setChecked(severalWindows);
    dialog->CHKLOOP()->setChecked(loop);
    dialog->CHKKEEP()->setChecked(keep);
    dialog->GoBtn_Click();
    if (!globals().RunListRunning || m_run.RunCount() == 0) {
        m_run.stop();
        return false;
    }
    m_run.RunPos = std::clamp(position, 0, m_run.RunCount());
    m_run.RunStart = 0;
    return true;
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
    bool found = false;
    bool overflow = false;
    m_run.setPages(m_lists->BuildRunList(upperName, &found, &overflow));
    m_kept.start(0, false, false); // the run dialog's Go asks for kept pages itself
    // A run holds 251 pages; a longer list runs its first 251, and the user is told.
    if (overflow)
        DialogService::message(QStringLiteral("Error - ") +
                               RunError(RunError::SubscriptOutOfRange).numberAndText());
    return found;
}

void ListsPanel::focusRunDialog()
{
    if (!m_runDialog)
        return;
    keepAboveOwner(m_runDialog, m_main);
    m_runDialog->show();
    m_runDialog->raise();
    m_runDialog->activateWindow();
}

bool ListsPanel::showKeptPage()
{
    Globals& g = globals();
    const int position = m_run.RunPos;
    const int slot = m_kept.keptSlot(position, g.CurrentUrl, [](int s) { return globals().WindowUrl[s]; });
    if (slot == 0)
        return false;
    const double now = nowSeconds();
    if (m_kept.reloadDue(position, now, 60.0 * VantrelConf::value(VantrelConf::kKeptReloadMinutes))) {
        g.WindowIndex = slot;
        m_main->webForm()->Form_LoadGo(slot); // loaded again in its own window
        m_kept.loaded(position, slot, now);
    } else {
        EventLog::write(QStringLiteral("page brought forward: window %1 %2").arg(slot).arg(g.CurrentUrl));
    }
    m_main->surf()->bringForward(slot);
    return true;
}

double ListsPanel::nowSeconds()
{
    return double(Clock::localNow().toMSecsSinceEpoch()) / 1000.0;
}

void ListsPanel::tick()
{
    m_runWatch->tick(); // a run that was just started is logged before its first page opens
    m_run.tick();
}

void ListsPanel::RunListBtn_Click()
{
    if (globals().RunListRunning)
        m_run.stop();
    if (globals().RunListShown && m_runDialog) {
        focusRunDialog();
        return;
    }
    if (!m_runDialog)
        m_runDialog = new RunList1(m_main);
    m_runDialog->Form_Load();
    focusRunDialog();
}

void ListsPanel::unloadRunDialog()
{
    if (m_runDialog)
        m_runDialog->close();
}
