// The main window's frame: where its tabs, the rows and the shared Favorites tree panel go as
// the window is resized or a tab is chosen, and how its place on the screen is remembered.
#include "Vantrel1.h"

#include "surf/SurfPanel.h"
#include "core/Globals.h"
#include "favorites/FavoritesPanel.h"
#include "history/HistoryPanel.h"
#include "lists/ListsPanel.h"
#include "widgets/SharedTreeTab.h"
#include "widgets/TabStrip.h"
#include "widgets/Twips.h"

#include <QFrame>
#include <QTabBar>

#include <algorithm>

namespace {

// Where the shared Favorites tree panel sits on the Favorites, Lists and History tabs.
constexpr int kFavoritesTreeLeft = 45;
constexpr int kFavoritesTreeTop = 2835;
constexpr int kOutOfSight = -1100;
constexpr int kTabStripMargin = 400;

} // namespace

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

