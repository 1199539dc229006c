#include "Vantrel1.h"

#include "SurfPanel.h"
#include "WebForm1.h"
#include "about/About1.h"
#include "about/HelpWindow.h"
#include "additions/WindowRecovery.h"
#include "browser/OptionsPanel.h"
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
#include "favorites/QuickButtons.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "lists/RunList1.h"
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
// Where the shared Favorites tree panel sits on the Favorites, Lists and History tabs.
constexpr int kFavoritesTreeLeft = 45;
constexpr int kFavoritesTreeTop = 2835;
constexpr int kOutOfSight = -1100;
constexpr int kTabStripMargin = 400;

const QStringList& tabCaptions()
{
    static const QStringList captions = {QStringLiteral("Surf"), QStringLiteral("Favorites"),
                                         QStringLiteral("Lists"), QStringLiteral("History"),
                                         QStringLiteral("Options")};
    return captions;
}

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(twipsToPixels(left), twipsToPixels(top), std::max(0, twipsToPixels(width)),
                 std::max(0, twipsToPixels(height)));
}

} // namespace

Vantrel1::Vantrel1() : QWidget(nullptr)
{
    Q_INIT_RESOURCE(resources); // the help page and icons live in the program's static library
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

    m_webForm = new WebForm1(m_surf, this);
    m_surf->setPool(m_webForm);
    m_options = new OptionsPanel(this);
    m_favoritesPanel = new FavoritesPanel(m_frame2, this);
    m_listsPanel = new ListsPanel(m_options->CMBLIST(), this);
    m_historyPanel = new HistoryPanel(this);
    // Every document a browser window completes is recorded under that window's group.
    connect(m_webForm, &WebForm1::documentCompleted, m_historyPanel->history(), &HistoryTree::CreateNode3);
    for (auto [index, panel] : {std::pair<int, QWidget*>{1, m_favoritesPanel},
                                {2, m_listsPanel},
                                {3, m_historyPanel},
                                {4, m_options}}) {
        auto* layout = new QVBoxLayout(m_tabStrip->widget(index));
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(panel);
    }
    qApp->installEventFilter(this);
    // F1 opens the help from any window of the program.
    auto* help = new QShortcut(QKeySequence::HelpContents, this);
    help->setContext(Qt::ApplicationShortcut);
    connect(help, &QShortcut::activated, this, &Vantrel1::showHelp);
    connect(m_webForm, &WebForm1::newWindowRequested, this, [this](const QString& url, bool userInitiated) {
        if (!m_newWindowGate.admit(userInitiated, Clock::secondsSinceMidnight()))
            return;
        const bool atLimit = globals().WindowCount >= kWindowSlots;
        globals().CurrentUrl = url;
        NewBtnAction(true);
        m_newWindowGate.opened(atLimit, Clock::secondsSinceMidnight());
    });

    m_timer = new QTimer(this);
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
    m_surf->RunNavigating = false;
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
    Form_GotFocus();
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
    Globals& g = globals();
    if (CMBLIST()->currentIndex() < 0)
        return; // no start-up list was chosen: nothing runs
    g.RunListName = CMBLIST()->currentText();
    if (!BuildRunList(g.RunListName.toUpper()))
        return;
    g.RunListRunning = true;
    g.RunListLoop = false;
    g.RunListMulti = true; // each page in a window of its own, once through
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
        m_about = new About1(this);
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
    if (g.WebFormBusy)
        m_webForm->Unload();
    if (g.RunListShown)
        m_listsPanel->unloadRunDialog();
    // The other windows go before the first question, so that none stays on screen behind it.
    if (g.AboutShown && m_about)
        m_about->close();
    if (g.ListsChanged &&
        DialogService::question(QStringLiteral("Do you want to save Changes to Favorite Web Page Lists?")))
        m_listsPanel->lists()->SaveListBtn_Click();
    if (g.HistoryChanged &&
        DialogService::question(QStringLiteral("Do you want to save History of Web Page Viewing?")))
        m_historyPanel->history()->SaveHistBtn_Click();
    if (g.ButtonsChanged && DialogService::question(QStringLiteral(
                                "Do you want to save Changes to Web Page Button Assignments?")))
        quickButtons()->SaveBtn_Click();
    if (OptionsDirty)
        SaveOptions();
    if (m_help)
        m_help->close();
    emit unloaded();
}

void Vantrel1::NewBtnAction(bool newWindow)
{
    m_surf->NewBtnAction(newWindow);
}

void Vantrel1::placeFavoritesTree()
{
    const int W = widthTwips();
    const int H = heightTwips();
    // The height follows the window only while there is room for it below the Favorites panel.
    const int frame4 = frame4HeightTwips();
    const int height = H - frame4 > 1500 ? twipsToPixels(H - frame4 - 1500) : m_frame2->height();
    m_frame2->setGeometry(twipsToPixels(kFavoritesTreeLeft), twipsToPixels(kFavoritesTreeTop),
                          twipsToPixels(W - 165), height);
    m_frame2->show();
    m_frame2->raise();
}

void Vantrel1::TabStrip1_Click()
{
    if (heightTwips() < 1000 || widthTwips() < 800)
        return;
    const QString caption = m_tabStrip->tabText(m_tabStrip->currentIndex());
    if (caption == u"Surf") {
        m_surf->show();
        m_surf->raise();
        m_frame2->hide();
        m_frame2->setGeometry(twipsToPixels(kOutOfSight), m_frame2->y(), 0, 0);
    } else if (caption == u"Options") {
        m_surf->hide();
        m_frame2->hide();
        m_frame2->move(twipsToPixels(kOutOfSight), m_frame2->y());
    } else {
        m_surf->hide();
        placeFavoritesTree();
    }
}

void Vantrel1::Form_Resize()
{
    const int W = widthTwips();
    const int H = heightTwips();
    if (H < 600 || W < 500)
        return;
    if (!m_settingUp)
        RememberPlacement();
    m_tabStrip->setGeometry(0, 0, width(), twipsToPixels(H - kTabStripMargin));
    const int tabTop = pixelsToTwips(m_tabStrip->tabBar()->sizeHint().height());
    const int panelHeight = H - kTabStripMargin - tabTop;
    m_surf->setGeometry(twipsRect(0, tabTop, W, panelHeight));
    m_surf->ArrangeRows(W);
    m_surf->arrangeControls(W, panelHeight);
    arrangeTreeTabs();
    if (m_frame2->isVisible())
        placeFavoritesTree();
}

int Vantrel1::frame4HeightTwips() const
{
    return pixelsToTwips(m_favoritesPanel->Frame4()->height());
}

void Vantrel1::arrangeTreeTabs()
{
    // The tabs' own content ends just above the tree panel; their commands fill the room below it.
    const int tabTop = m_tabStrip->tabBar()->sizeHint().height();
    const int treeTop = twipsToPixels(kFavoritesTreeTop);
    const int pageBottom = twipsToPixels(heightTwips() - kTabStripMargin);
    const auto tabs = {static_cast<SharedTreeTab*>(m_favoritesPanel), static_cast<SharedTreeTab*>(m_listsPanel),
                       static_cast<SharedTreeTab*>(m_historyPanel)};
    // First the upper parts, Frame4 among them: its height decides how far the tree reaches.
    for (SharedTreeTab* tab : tabs)
        tab->fitAround(treeTop - tabTop - 10, 0);
    const int treeBottom = twipsToPixels(heightTwips() - frame4HeightTwips() - 1500 + kFavoritesTreeTop);
    for (SharedTreeTab* tab : tabs)
        tab->fitAround(treeTop - tabTop - 10, pageBottom - treeBottom - 12);
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

namespace {
// Twips turn into whole pixels and back with a rounding loss: a place that is still the one the
// stored twips give keeps those twips, so a window nobody moved keeps its numbers exactly.
bool rememberTwips(int& stored, int pixels)
{
    if (twipsToPixels(stored) == pixels)
        return false;
    stored = pixelsToTwips(pixels);
    return true;
}
} // namespace

void Vantrel1::RememberPlacement()
{
    Globals& g = globals();
    bool changed = false;
    if (m_placedOnScreen) {
        changed = rememberTwips(g.MainLeft, x());
        changed = rememberTwips(g.MainTop, y()) || changed;
    }
    changed = rememberTwips(g.MainHeight, height()) || changed;
    changed = rememberTwips(g.MainWidth, width()) || changed;
    if (changed)
        OptionsDirty = true;
}

void Vantrel1::Timer1_Timer()
{
    m_listsPanel->tick();
    m_webForm->recovery()->tick();
    QGroupBox* calendar = m_surf->Frame7();
    if (calendar->isVisible())
        calendar->setTitle(u' ' + Clock::timeOfDay().toString(QStringLiteral("HH:mm:ss")) + u' ');
}

void Vantrel1::resizeEvent(QResizeEvent*)
{
    Form_Resize();
}

void Vantrel1::paintEvent(QPaintEvent* event)
{
    m_placedOnScreen = true;
    QWidget::paintEvent(event);
}

void Vantrel1::moveEvent(QMoveEvent*)
{
    // A moved window is remembered like a resized one, so it opens where it was left.
    if (!m_settingUp && m_placedOnScreen && isVisible() && heightTwips() >= 600 && widthTwips() >= 500)
        RememberPlacement();
}

void Vantrel1::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    event->accept();
}
