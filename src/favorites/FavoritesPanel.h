#pragma once

#include "widgets/SharedTreeTab.h"

class FavoritesMenu;
class FavoritesTree;
class FavoritesWatch;
class GradientButton;
class KeyedTree;
class QFrame;
class QuickButtons;
class QTabWidget;
class SurfPanel;
class Verbs;

// The Favorites tab: the quick buttons (Frame4) above the shared tree panel, Save, Organize and
// Refresh below it. The Favorites tree SSTree1 and the distribute switch live in the shared panel
// (Frame2), which the Lists and History tabs show too.
class FavoritesPanel : public SharedTreeTab
{
    Q_OBJECT

public:
    FavoritesPanel(QFrame* sharedPanel, Verbs* verbs, SurfPanel* rows, QTabWidget* tabs);

    KeyedTree* SSTree1() const { return m_tree; }
    FavoritesTree* favorites() const { return m_favorites; }
    FavoritesMenu* menu() const { return m_menu; }
    FavoritesWatch* watch() const { return m_watch; }
    QuickButtons* quickButtons() const { return m_quickButtons; }
    QFrame* Frame4() const { return m_frame4; }
    GradientButton* SaveBtn() const { return m_saveBtn; }
    GradientButton* OrgFavBtn() const { return m_orgFavBtn; }
    GradientButton* RefreshBtn() const { return m_refreshBtn; }
    GradientButton* DistFavBtn() const { return m_distFavBtn; }

private:
    KeyedTree* m_tree;
    GradientButton* m_distFavBtn;
    QFrame* m_frame4;
    FavoritesTree* m_favorites;
    FavoritesMenu* m_menu;
    FavoritesWatch* m_watch;
    QuickButtons* m_quickButtons;
    GradientButton* m_saveBtn;
    GradientButton* m_orgFavBtn;
    GradientButton* m_refreshBtn;
};
