#include "RunList1.h"

#include "verbs/Verbs.h"
#include "widgets/WindowColors.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "widgets/GradientButton.h"
#include "widgets/WindowPlacement.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QTimer>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
constexpr int kDefaultInterval = 2; // "2 minute"
const QString kWindowsTip = QStringLiteral("Run List in One Internet Explorer Window instead of 8");
const QString kOptionsTip = QStringLiteral("Set Program Window Options");
const QString kPauseTip = QStringLiteral("Hold the page shown and what is left of its time");
const QString kResumeTip = QStringLiteral("Go on from the page held, with the time it had left");
} // namespace

const QList<QPair<QString, int>>& RunList1::intervals()
{
    // "15 minute" carries 100: a run spaced by it waits 1000 seconds, as it always has.
    static const QList<QPair<QString, int>> table = {
        {"30 seconds", 3}, {"1 minute", 6},   {"2 minute", 12},   {"3 minute", 18}, {"4 minute", 24},
        {"5 minute", 30},  {"6 minute", 36},  {"7 minute", 42},   {"8 minute", 48}, {"9 minute", 54},
        {"10 minute", 60}, {"12 minute", 72}, {"15 minute", 100},
    };
    return table;
}

RunList1::RunList1(QWidget* owner, Verbs* verbs, const QComboBox* listNames)
    : QWidget(owner, Qt::Window), m_owner(owner), m_verbs(verbs), m_listNames(listNames)
{
    setObjectName(QStringLiteral("RunList1"));
    setWindowTitle(QStringLiteral("Run List of Web Pages"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* listLabel = new QLabel(QStringLiteral("Select Favorite List:"), frame);
    listLabel->setObjectName(QStringLiteral("Label1_0"));
    m_lists = new QComboBox(frame);
    m_lists->setObjectName(QStringLiteral("CMBLIST"));
    m_lists->setToolTip(QStringLiteral("Select Favorite Web Page List to Run"));
    listLabel->setBuddy(m_lists);
    auto* timeLabel = new QLabel(QStringLiteral("Select Time Between Pages:"), frame);
    timeLabel->setObjectName(QStringLiteral("Label1_1"));
    m_times = new QComboBox(frame);
    m_times->setObjectName(QStringLiteral("CMBTIME"));
    m_times->setToolTip(QStringLiteral("Select Time Interval between Web Pages"));
    timeLabel->setBuddy(m_times);
    for (const auto& [text, data] : intervals())
        m_times->addItem(text, data);
    m_multi = new QCheckBox(QStringLiteral("Use Multiple Internet Explorer Windows"), frame);
    m_multi->setObjectName(QStringLiteral("CHKPAGE"));
    m_multi->setToolTip(kWindowsTip);
    m_loop = new QCheckBox(QStringLiteral("Run Continuous Loop"), frame);
    m_loop->setObjectName(QStringLiteral("CHKLOOP"));
    m_loop->setToolTip(kWindowsTip);
    m_keep = new QCheckBox(QStringLiteral("Keep Pages Loaded"), frame);
    m_keep->setObjectName(QStringLiteral("CHKKEEP"));
    m_keep->setToolTip(QStringLiteral("Switch between the open windows instead of loading each page again"));
    m_go = new GradientButton(QStringLiteral("GoBtn"), QStringLiteral("Go"), frame);
    m_go->setToolTip(kOptionsTip);
    m_cancel = new GradientButton(QStringLiteral("CancelBtn"), QStringLiteral("Cancel"), frame);
    m_cancel->setToolTip(kOptionsTip);
    m_help = new GradientButton(QStringLiteral("HelpBtn"), QStringLiteral("Help"), frame);
    m_help->setToolTip(QStringLiteral("Help with Program Options"));
    // The run going on: back a page, hold it, on a page.
    m_previous = new GradientButton(QStringLiteral("PreviousBtn"), QStringLiteral("Previous"), frame);
    m_previous->setToolTip(QStringLiteral("Show the page before the one shown, its time starting afresh"));
    m_pause = new GradientButton(QStringLiteral("PauseBtn"), QStringLiteral("Pause"), frame);
    m_pause->setToolTip(kPauseTip);
    m_next = new GradientButton(QStringLiteral("NextBtn"), QStringLiteral("Next"), frame);
    m_next->setToolTip(QStringLiteral("Show the next page now, its time starting afresh"));
    for (GradientButton* b : {m_go, m_cancel, m_help, m_previous, m_pause, m_next})
        b->setMinimumHeight(26);

    auto* grid = new QGridLayout(frame);
    grid->addWidget(listLabel, 0, 0);
    grid->addWidget(m_lists, 0, 1);
    grid->addWidget(timeLabel, 1, 0);
    grid->addWidget(m_times, 1, 1);
    grid->addWidget(m_multi, 2, 0, 1, 2);
    grid->addWidget(m_loop, 3, 0, 1, 2);
    grid->addWidget(m_keep, 4, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_go);
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_help);
    grid->addLayout(buttons, 5, 0, 1, 2);
    auto* steps = new QHBoxLayout;
    steps->addWidget(m_previous);
    steps->addWidget(m_pause);
    steps->addWidget(m_next);
    grid->addLayout(steps, 6, 0, 1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(frame);

    connect(m_go, &GradientButton::clicked, this, &RunList1::GoBtn_Click);
    connect(m_cancel, &GradientButton::clicked, this, &RunList1::close);
    connect(m_help, &GradientButton::clicked, this, &RunList1::helpRequested);
    connect(m_previous, &GradientButton::clicked, this, [this] { m_verbs->previousPage(); });
    connect(m_next, &GradientButton::clicked, this, [this] { m_verbs->nextPage(); });
    connect(m_pause, &GradientButton::clicked, this, [this] {
        if (m_verbs->state().run.paused)
            m_verbs->resumeRun();
        else
            m_verbs->pauseRun();
        showRun();
    });
    connect(m_verbs, &Verbs::stateChanged, this, &RunList1::showRun);
    showRun();
}

void RunList1::showRun()
{
    // The step buttons act on a run that goes; the pause button says what a click does.
    const RunState run = m_verbs->state().run;
    for (GradientButton* b : {m_previous, m_pause, m_next})
        b->setEnabled(run.running);
    m_pause->setText(run.paused ? QStringLiteral("Resume") : QStringLiteral("Pause"));
    m_pause->setToolTip(run.paused ? kResumeTip : kPauseTip);
}

RunList1::~RunList1() = default;

void RunList1::Form_Load()
{
    Globals& g = globals();
    m_unloaded = false;
    m_lists->clear();
    const QComboBox* names = m_listNames;
    for (int i = 0; i < names->count(); ++i)
        m_lists->addItem(names->itemText(i));
    // With a single list the user picks it: nothing is chosen for them.
    m_lists->setCurrentIndex(m_lists->count() > 1 ? 0 : -1);
    if (m_times->count() > 1)
        m_times->setCurrentIndex(kDefaultInterval);
    // The dialog opens beside the main window.
    const int left = pixelsToTwips(m_owner->x()) <= 4000 ? 5000 : 1000;
    move(twipsToPixels(left), y());
    keepOnScreen(this); // its title bar, too, so that it can be read and dragged
    g.NextRunItem = 1;
    g.RunListShown = true;
}

void RunList1::GoBtn_Click()
{
    if (m_lists->currentIndex() < 0) {
        DialogService::message(QStringLiteral("Please Select a List"));
        return;
    }
    if (m_times->currentIndex() < 0) {
        DialogService::message(QStringLiteral("Please Select a Time Interval"));
        return;
    }
    RunChoice choice;
    choice.list = m_lists->currentText();
    choice.intervalSeconds = m_times->currentData().toInt() * 10;
    choice.loop = m_loop->isChecked();
    choice.severalWindows = m_multi->isChecked();
    choice.keepPagesLoaded = m_keep->isChecked();
    m_verbs->runList(choice);
}

void RunList1::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    // Closing the dialog ends a run completely: the next Go starts at the list's first page.
    m_verbs->stopRun();
    globals().RunListShown = false;
}

void RunList1::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    event->accept();
}

void RunList1::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Once the desktop has framed the dialog, its real frame is known: checked again then.
    QTimer::singleShot(0, this, [this] { keepOnScreen(this); });
}

void RunList1::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyDialogColors(this);
    QWidget::changeEvent(event);
}
