#include "Vantrel1.h"

#include "surf/SurfPanel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "about/About1.h"
#include "about/HelpWindow.h"
#include "options/SchedulesDialog.h"
#include "options/ScreensDialog.h"
#include "schedule/Scheduler.h"
#include "session/ProgramSession.h"
#include "settings/SchedulesFile.h"
#include "settings/ScreensFile.h"
#include "screens/ScreenPlacer.h"
#include "watch/SleepWatch.h"
#include "watch/WindowRecovery.h"
#include "settings/VantrelConf.h"
#include "options/OptionsPanel.h"
#include "core/ButtonFile.h"
#include "core/Clock.h"
#include "core/ColorsFile.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/OptionsFile.h"
#include "core/RunError.h"
#include "core/Startup.h"
#include "favorites/FavoritesPanel.h"
#include "favorites/FavoritesTree.h"
#include "favorites/FavoritesWatch.h"
#include "favorites/QuickButtons.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "lists/RunList1.h"
#include "sync/FavoritesSync.h"
#include "options/MqttDialog.h"
#include "options/RemotePageDialog.h"
#include "widgets/AccessibleControls.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/TabStrip.h"
#include "widgets/Twips.h"
#include "widgets/WindowPlacement.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int kTimerIntervalMs = 600;
constexpr long kFavoritesFolderId = 6;

const QStringList& tabCaptions()
{
    static const QStringList captions = {QStringLiteral("Surf"), QStringLiteral("Favorites"),
                                         QStringLiteral("Lists"), QStringLiteral("History"),
                                         QStringLiteral("Options")};
    return captions;
}

} // namespace

Vantrel1::Vantrel1() : QWidget(nullptr)
{
    Q_INIT_RESOURCE(resources); // the help page and icons live in the program's static library
    installAccessibleControls();  // before the first control a screen reader may ask about
    setObjectName(QStringLiteral("Vantrel1"));
    setWindowTitle(QStringLiteral("Vantrel"));
    setMinimumSize(twipsToPixels(2500), twipsToPixels(2000));

    m_tabStrip = new TabStrip(this);
    m_tabStrip->setObjectName(QStringLiteral("TabStrip1"));
    for (int i = 0; i < tabCaptions().size(); ++i) {
        auto* panel = new QWidget;
        panel->setObjectName(QStringLiteral("TabPanel%1").arg(i + 1));
        m_tabStrip->addTab(panel, tabCaptions()[i]);
    }

    m_surf = new SurfPanel(this);
    m_surf->setTabSelector([this](int index) { m_tabStrip->setCurrentIndex(index); });

    m_frame2 = new QFrame(this);
    m_frame2->setObjectName(QStringLiteral("Frame2"));

    m_verbs = new Verbs(this);
    m_surf->setVerbs(m_verbs);
    m_options = new OptionsPanel;
    m_favoritesPanel = new FavoritesPanel(m_frame2, m_verbs, m_surf, m_tabStrip);
    m_listsPanel = new ListsPanel(m_options->CMBLIST(), m_verbs, m_surf, m_favoritesPanel->favorites());
    m_historyPanel = new HistoryPanel(m_verbs);
    connect(m_options, &OptionsPanel::colorsApplied, this, &Vantrel1::ApplyColors);
    connect(m_options, &OptionsPanel::moreOptionsApplied, m_favoritesPanel->watch(), &FavoritesWatch::applySetting);
    // The bookmarks file kept in step: what a round changed in the folder shows in the tree, with
    // its open folders as they were.
    m_favoritesSync = new FavoritesSync(m_verbs->favorites(), this);
    connect(m_options, &OptionsPanel::moreOptionsApplied, m_favoritesSync, &FavoritesSync::applySetting);
    connect(m_favoritesSync, &FavoritesSync::favoritesChanged, m_favoritesPanel->watch(),
            &FavoritesWatch::rebuildKeepingState);
    connect(m_listsPanel, &ListsPanel::helpRequested, this, &Vantrel1::showHelp);
    connect(m_options, &OptionsPanel::helpRequested, this, &Vantrel1::showHelp);
    connect(m_options, &OptionsPanel::aboutRequested, this, &Vantrel1::AboutBtn_Click);
    connect(m_options, &OptionsPanel::schedulesRequested, this, &Vantrel1::showSchedules);
    connect(m_options, &OptionsPanel::screensRequested, this, &Vantrel1::showScreens);
    connect(m_options, &OptionsPanel::mqttRequested, this, &Vantrel1::showMqtt);
    connect(m_options, &OptionsPanel::remotePageRequested, this, &Vantrel1::showRemotePage);
    for (auto [index, panel] : {std::pair<int, QWidget*>{1, m_favoritesPanel},
                                {2, m_listsPanel},
                                {3, m_historyPanel},
                                {4, m_options}}) {
        auto* layout = new QVBoxLayout(m_tabStrip->widget(index));
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(panel);
    }
    setUpSearch();
    qApp->installEventFilter(this);
    // F1 opens the help from any window of the program.
    auto* help = new QShortcut(QKeySequence::HelpContents, this);
    help->setContext(Qt::ApplicationShortcut);
    connect(help, &QShortcut::activated, this, &Vantrel1::showHelp);

    m_timer = new QTimer(this);
    m_session = std::make_unique<ProgramSession>(m_verbs, [this](const SessionRun& r) {
        return m_listsPanel->resumeRun(r.list, r.interval, r.loop, r.severalWindows, r.keepPagesLoaded, r.position);
    });
    m_timer->setObjectName(QStringLiteral("Timer1"));
    m_timer->setInterval(kTimerIntervalMs);
    m_timer->setTimerType(Qt::CoarseTimer);
    connect(m_timer, &QTimer::timeout, this, &Vantrel1::Timer1_Timer);
    connect(m_tabStrip, &QTabWidget::currentChanged, this, &Vantrel1::TabStrip1_Click);
}

Vantrel1::~Vantrel1() = default;

int Vantrel1::widthTwips() const
{
    return pixelsToTwips(width());
}

int Vantrel1::heightTwips() const
{
    return pixelsToTwips(height());
}

void Vantrel1::InitFormState()
{
    Globals& g = globals();
    g.CurrentUrl = QString::fromLatin1(kDefaultStartUrl);
    g.ButtonsChanged = false;
    g.ListsChanged = false;
    g.HistoryChanged = false;
    OptionsDirty = false;
    m_surf->RowDragToFavorites = false;
    m_surf->RowDragToList = false;
}

void Vantrel1::Form_Load()
{
    Globals& g = globals();
    m_settingUp = true;
    FirstShow = true;
    for (int row = 0; row < kWindowSlots; ++row)
        m_surf->hideRow(row);
    g.FavoritesPath = GetFavoritesFolder(kFavoritesFolderId);
    favorites()->RefreshBtn_Click();
    favorites()->removeLeftoverTemporaries();
    m_favoritesPanel->watch()->setEnabled(VantrelConf::flag(VantrelConf::kKeepFavoritesInStep));
    m_favoritesSync->applySetting();
    quickButtons()->LoadButtons();
    m_listsPanel->lists()->LoadListTree();
    // The history tree is built from the records only when the history file exists.
    m_historyPanel->history()->CreateHistoryRoots();
    if (QFileInfo::exists(appFilePath(QString::fromLatin1(kHistoryFileName))))
        m_historyPanel->history()->LoadHistoryTreeLater();
    m_surf->setCalendarDate(Clock::today());
    InitFormState();
    LoadColors();
    m_options->ShowColorControls();
    LoadOptions();
    m_options->ShowOptionControls();

    // Keep the window on the screen; a negative place jumps to 800, not to 0, as it always has.
    if (g.MainLeft > 8800)
        g.MainLeft = 8800;
    if (g.MainLeft < 0)
        g.MainLeft = 800;
    if (g.MainTop > 6800)
        g.MainTop = 6800;
    if (g.MainTop < 0)
        g.MainTop = 800;
    setWindowFlag(Qt::WindowStaysOnTopHint, g.OptOnTop);
    resize(twipsToPixels(g.MainWidth), twipsToPixels(g.MainHeight));
    move(twipsToPixels(g.MainLeft), twipsToPixels(g.MainTop));
    arrangeTreeTabs();
    placeFavoritesTree();
    m_helpFile = appFilePath(QStringLiteral("Help/Vantrel.Hlp"));
    ApplyColors();
    m_timer->start();
    Form_Resize();
    // The window opens on its first tab, which shows exactly what that tab's rule says.
    TabStrip1_Click();
    m_settingUp = false;
    // Each window goes to the monitor it is fixed to before it is first shown.
    m_verbs->pool()->placer()->setPlaces(ScreensFile::read(ScreensFile::path()));
    // A session picked up after a crash takes the place of the start-up page and list.
    if (m_session->resume())
        FirstShow = false;
    Form_GotFocus();
    // The hours come last: a rotation the session took up again, or the start-up list, is found
    // going on, not started twice.
    m_scheduler = std::make_unique<Scheduler>(m_verbs);
    m_scheduler->setSchedules(SchedulesFile::read(SchedulesFile::path()));
    m_scheduler->start();
    // After a sleep, pages that may be out of date come again, and the hours are looked at at once.
    m_sleep = std::make_unique<SleepWatch>(QDBusConnection::systemBus());
    connect(m_sleep.get(), &SleepWatch::wokeUp, this, [this] {
        m_verbs->pool()->recovery()->wokeUp();
        m_scheduler->evaluate();
    });
}

SchedulesDialog* Vantrel1::schedulesDialog() const
{
    return m_schedules.data();
}

void Vantrel1::showSchedules()
{
    if (!m_schedules) {
        m_schedules = new SchedulesDialog(this, m_scheduler.get(), m_verbs->listNames());
        m_schedules->setAttribute(Qt::WA_DeleteOnClose); // made again with the lists of that day
    }
    keepAboveOwner(m_schedules, this);
    m_schedules->show();
    keepOnScreen(m_schedules);
    m_schedules->raise();
    m_schedules->activateWindow();
}

ScreensDialog* Vantrel1::screensDialog() const
{
    return m_screens.data();
}

void Vantrel1::showScreens()
{
    if (!m_screens) {
        m_screens = new ScreensDialog(this, m_verbs->pool()->placer());
        m_screens->setAttribute(Qt::WA_DeleteOnClose); // made again with the monitors of that moment
    }
    keepAboveOwner(m_screens, this);
    m_screens->show();
    keepOnScreen(m_screens);
    m_screens->raise();
    m_screens->activateWindow();
}

RemotePageDialog* Vantrel1::remotePageDialog() const
{
    return m_remoteDialog;
}

void Vantrel1::showRemotePage()
{
    if (!m_remoteDialog)
        m_remoteDialog = new RemotePageDialog(this, m_remotePage);
    else if (!m_remoteDialog->isVisible())
        m_remoteDialog->showSettings();
    keepAboveOwner(m_remoteDialog, this);
    m_remoteDialog->show();
    keepOnScreen(m_remoteDialog);
    m_remoteDialog->raise();
    m_remoteDialog->activateWindow();
}

MqttDialog* Vantrel1::mqttDialog() const
{
    return m_mqtt;
}

void Vantrel1::showMqtt()
{
    if (!m_mqtt)
        m_mqtt = new MqttDialog(this, m_mqttDoor);
    else if (!m_mqtt->isVisible())
        m_mqtt->showSettings(); // what is stored now, not what was typed and cancelled
    keepAboveOwner(m_mqtt, this);
    m_mqtt->show();
    keepOnScreen(m_mqtt);
    m_mqtt->raise();
    m_mqtt->activateWindow();
}

void Vantrel1::Form_GotFocus()
{
    Globals& g = globals();
    if (!FirstShow)
        return;
    if (g.OptStartUrl && !g.StartUrl.trimmed().isEmpty()) {
        g.CurrentUrl = g.StartUrl;
        NewBtnAction(g.NewWindowMode);
        g.OptStartList = false; // the start-up address wins over the start-up list
        m_options->CHKLIST()->setChecked(false);
    }
    if (g.OptStartList)
        StartStartupList();
    FirstShow = false;
}

void Vantrel1::StartStartupList()
{
    if (CMBLIST()->currentIndex() < 0)
        return; // no start-up list was chosen: nothing runs
    m_verbs->runStartupList(CMBLIST()->currentText());
}

void Vantrel1::ShowOptionControls()
{
    m_options->ShowOptionControls();
}

QComboBox* Vantrel1::CMBLIST() const
{
    return m_options->CMBLIST();
}

About1* Vantrel1::aboutBox() const
{
    return m_about;
}

void Vantrel1::AboutBtn_Click()
{
    if (!m_about)
        m_about = new About1(this, m_verbs);
    if (!globals().AboutShown)
        m_about->Form_Load();
    keepAboveOwner(m_about, this);
    m_about->show();
    m_about->raise();
    m_about->activateWindow();
}

bool Vantrel1::eventFilter(QObject* watched, QEvent* event)
{
    // Desktop colours follow a change of the theme.
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        ApplyColors();
    return QWidget::eventFilter(watched, event);
}

bool Vantrel1::BuildRunList(const QString& upperName)
{
    return m_listsPanel->BuildRunList(upperName);
}

WebForm1* Vantrel1::webForm() const
{
    return m_verbs->pool();
}

void Vantrel1::showHelp()
{
    if (!m_help)
        m_help = new HelpWindow(this);
    m_help->showHelp();
}

void Vantrel1::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    Globals& g = globals();
    m_timer->stop();
    if (m_scheduler)
        m_scheduler->stop(); // the runs end with the program, not to be started again
    m_session->end(); // the session as it is, before its windows close
    m_favoritesSync->finish(); // what changed last reaches the bookmarks file
    m_verbs->closeAllWindows();
    if (g.RunListShown)
        m_listsPanel->unloadRunDialog();
    // The other windows go before the first question, so that none stays on screen behind it.
    if (g.AboutShown && m_about)
        m_about->close();
    if (g.ListsChanged && keepChanges(QStringLiteral("Do you want to save Changes to Favorite Web Page Lists?")))
        m_listsPanel->lists()->SaveListBtn_Click();
    if (g.HistoryChanged && keepChanges(QStringLiteral("Do you want to save History of Web Page Viewing?")))
        m_historyPanel->history()->SaveHistBtn_Click();
    if (g.ButtonsChanged &&
        keepChanges(QStringLiteral("Do you want to save Changes to Web Page Button Assignments?")))
        quickButtons()->SaveBtn_Click();
    if (OptionsDirty)
        SaveOptions();
    if (m_help)
        m_help->close();
    emit unloaded();
}

void Vantrel1::unloadFromOutside(bool discard)
{
    m_saveAnswer = !discard;
    Form_Unload();
}

bool Vantrel1::keepChanges(const QString& question) const
{
    return m_saveAnswer ? *m_saveAnswer : DialogService::question(question);
}

void Vantrel1::NewBtnAction(bool newWindow)
{
    m_verbs->NewBtnAction(newWindow);
}

KeyedTree* Vantrel1::SSTree1() const
{
    return m_favoritesPanel->SSTree1();
}

FavoritesTree* Vantrel1::favorites() const
{
    return m_favoritesPanel->favorites();
}

QuickButtons* Vantrel1::quickButtons() const
{
    return m_favoritesPanel->quickButtons();
}

GradientButton* Vantrel1::SaveBtn() const
{
    return m_favoritesPanel->SaveBtn();
}

GradientButton* Vantrel1::OrgFavBtn() const
{
    return m_favoritesPanel->OrgFavBtn();
}

GradientButton* Vantrel1::RefreshBtn() const
{
    return m_favoritesPanel->RefreshBtn();
}

void Vantrel1::Timer1_Timer()
{
    m_verbs->tick();
    m_session->tick();
    if (m_surf->Frame7()->isVisible())
        m_surf->Frame7()->showTime();
}

void Vantrel1::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    event->accept();
}
