#include "Vantrel1.h"

#include "SurfPanel.h"
#include "WebForm1.h"
#include "core/ButtonFile.h"
#include "core/Clock.h"
#include "core/ColorsFile.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "core/OptionsFile.h"
#include "core/Startup.h"
#include "favorites/FavoritesTree.h"
#include "favorites/QuickButtons.h"
#include "favorites/ShellServices.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/TabStrip.h"
#include "widgets/Twips.h"

#include <QCalendarWidget>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
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
constexpr int kFrame4Height = 2400;
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

    m_frame4 = new QFrame(this);
    m_frame4->setObjectName(QStringLiteral("Frame4"));

    m_frame2 = new QFrame(this);
    m_frame2->setObjectName(QStringLiteral("Frame2"));

    m_webForm = new WebForm1(m_surf, this);
    buildFavoritesTab();
    m_surf->setPool(m_webForm);
    connect(m_webForm, &WebForm1::newWindowRequested, this, [this](const QString& url) {
        globals().CurrentUrl = url;
        NewBtnAction(true);
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
    m_favorites->RefreshBtn_Click();
    m_quickButtons->LoadButtons();
    m_surf->setCalendarDate(Clock::today());
    InitFormState();
    LoadColors();
    LoadOptions();

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
    placeFavoritesTree();
    m_helpFile = appFilePath(QStringLiteral("Help/Vantrel.Hlp"));
    m_surf->setAllRowsNormal();
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
    }
    FirstShow = false;
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
    // Until the trees hold the pages, the shared arrays are what there is to save.
    if (g.ListsChanged &&
        DialogService::question(QStringLiteral("Do you want to save Changes to Favorite Web Page Lists?"))) {
        SortLists();
        SaveListFile(g.ListCount);
    }
    if (g.HistoryChanged &&
        DialogService::question(QStringLiteral("Do you want to save History of Web Page Viewing?")))
        SaveHistoryFile(g.HistoryCount);
    if (g.ButtonsChanged && DialogService::question(QStringLiteral(
                                "Do you want to save Changes to Web Page Button Assignments?")))
        SaveButtonFile(appFilePath(QString::fromLatin1(kButtonFileName)));
    if (OptionsDirty)
        SaveOptions();
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
    const int height =
        H - kFrame4Height > 1500 ? twipsToPixels(H - kFrame4Height - 1500) : m_frame2->height();
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
    if (m_frame2->isVisible())
        placeFavoritesTree();
    arrangeFavoritesTab();
}

void Vantrel1::buildFavoritesTab()
{
    // The Favorites tree and the distribute switch sit in Frame2, which the Favorites, Lists and
    // History tabs share.
    m_ssTree1 = new KeyedTree(QStringLiteral("SSTree1"), m_frame2);
    m_ssTree1->setToolTip(tr("Your Favorites folder"));
    auto* distribute = new GradientButton(QStringLiteral("DistFavBtn"), QString(), m_frame2);
    auto* treeLayout = new QVBoxLayout(m_frame2);
    treeLayout->setContentsMargins(0, 0, 0, 0);
    treeLayout->setSpacing(2);
    treeLayout->addWidget(m_ssTree1, 1);
    treeLayout->addWidget(distribute);

    m_frame4->setFrameShape(QFrame::NoFrame);
    m_quickButtons = new QuickButtons(m_frame4, distribute, this);
    m_favorites = new FavoritesTree(m_ssTree1, distribute, this);
    m_quickButtons->setTree(m_favorites);

    // The tab's own controls: the quick buttons above the tree, the commands below it.
    QWidget* page = m_tabStrip->widget(1);
    m_frame4->setParent(page);
    m_favoritesCommands = new QWidget(page);
    auto* pageLayout = new QVBoxLayout(page);
    pageLayout->setContentsMargins(3, 3, 3, 3);
    pageLayout->addWidget(m_frame4);
    pageLayout->addStretch(1); // the tree panel lies over this part
    pageLayout->addWidget(m_favoritesCommands);
    auto* commandLayout = new QHBoxLayout(m_favoritesCommands);
    commandLayout->setContentsMargins(0, 0, 0, 0);
    m_saveBtn = new GradientButton(QStringLiteral("SaveBtn"), tr("Save"), page);
    m_saveBtn->setToolTip(tr("Save the Web Page Button Assignments"));
    m_orgFavBtn = new GradientButton(QStringLiteral("OrgFavBtn"), tr("Organize"), page);
    m_orgFavBtn->setToolTip(tr("Organize your Favorites folder in the file manager"));
    m_refreshBtn = new GradientButton(QStringLiteral("RefreshBtn"), tr("Refresh"), page);
    m_refreshBtn->setToolTip(tr("Read the Favorites folder again"));
    for (GradientButton* command : {m_saveBtn, m_orgFavBtn, m_refreshBtn})
        commandLayout->addWidget(command);
    connect(m_saveBtn, &GradientButton::clicked, m_quickButtons, &QuickButtons::SaveBtn_Click);
    connect(m_refreshBtn, &GradientButton::clicked, m_favorites, &FavoritesTree::RefreshBtn_Click);
    connect(m_orgFavBtn, &GradientButton::clicked, this,
            [] { ShellServices::openFolder(globals().FavoritesPath); });
}

void Vantrel1::arrangeFavoritesTab()
{
    // The quick buttons end just above the tree panel; the commands fill the room below it.
    const int tabTop = m_tabStrip->tabBar()->sizeHint().height();
    const int treeTop = twipsToPixels(kFavoritesTreeTop);
    const int treeBottom = twipsToPixels(heightTwips() - kFrame4Height - 1500 + kFavoritesTreeTop);
    const int pageBottom = twipsToPixels(heightTwips() - kTabStripMargin);
    m_frame4->setFixedHeight(std::max(40, treeTop - tabTop - 10));
    m_favoritesCommands->setFixedHeight(std::clamp(pageBottom - treeBottom - 12, 18, 28));
}

void Vantrel1::RememberPlacement()
{
    Globals& g = globals();
    g.MainLeft = pixelsToTwips(x());
    g.MainTop = pixelsToTwips(y());
    g.MainHeight = heightTwips();
    g.MainWidth = widthTwips();
    OptionsDirty = true;
}

void Vantrel1::Timer1_Timer()
{
    QGroupBox* calendar = m_surf->Frame7();
    if (calendar->isVisible())
        calendar->setTitle(u' ' + Clock::timeOfDay().toString(QStringLiteral("HH:mm:ss")) + u' ');
}

void Vantrel1::resizeEvent(QResizeEvent*)
{
    Form_Resize();
}

void Vantrel1::moveEvent(QMoveEvent*)
{
    // A moved window is remembered like a resized one, so it opens where it was left.
    if (!m_settingUp && isVisible() && heightTwips() >= 600 && widthTwips() >= 500)
        RememberPlacement();
}

void Vantrel1::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    event->accept();
}
