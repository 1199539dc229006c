#pragma once

#include <QWidget>

class FavoritesTree;
class GradientButton;
class KeyedTree;
class QFrame;
class QTabWidget;
class QTimer;
class QuickButtons;
class SurfPanel;
class WebForm1;

// The main window: the tab strip with Surf, Favorites, Lists, History and Options, the panels
// laid out in twips as the options file keeps the window's size, the one periodic timer, and the
// window's load, first focus and unload.
class Vantrel1 : public QWidget
{
    Q_OBJECT

public:
    Vantrel1();
    ~Vantrel1() override;

    // Loads the window (start-up steps: state, options, placement, first focus). Call once, before
    // showing it.
    void Form_Load();
    // Acts once, while FirstShow: opens the start-up address (or runs the start-up list).
    void Form_GotFocus();
    // Closes the browser windows, offers to save what changed, saves changed options.
    void Form_Unload();

    // Opens CurrentUrl: the path every part of the program takes to show a page.
    void NewBtnAction(bool newWindow);

    // Tab change and resize rules; the window's placement into the options.
    void TabStrip1_Click();
    void Form_Resize();
    void RememberPlacement();
    void Timer1_Timer();

    SurfPanel* surf() const { return m_surf; }
    WebForm1* webForm() const { return m_webForm; }
    QTabWidget* TabStrip1() const { return m_tabStrip; }
    QFrame* Frame2() const { return m_frame2; }
    QFrame* Frame4() const { return m_frame4; }
    KeyedTree* SSTree1() const { return m_ssTree1; }
    FavoritesTree* favorites() const { return m_favorites; }
    QuickButtons* quickButtons() const { return m_quickButtons; }
    GradientButton* SaveBtn() const { return m_saveBtn; }
    GradientButton* OrgFavBtn() const { return m_orgFavBtn; }
    GradientButton* RefreshBtn() const { return m_refreshBtn; }
    QTimer* Timer1() const { return m_timer; }
    QString helpFile() const { return m_helpFile; }

    bool FirstShow = false;
    bool OptionsDirty = false;

signals:
    // The window has unloaded: the program ends.
    void unloaded();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void InitFormState();
    // Shows the shared Favorites tree panel in its place below the tab's own content.
    void placeFavoritesTree();
    int widthTwips() const;
    int heightTwips() const;
    void buildFavoritesTab();
    void arrangeFavoritesTab();

    QTabWidget* m_tabStrip;
    SurfPanel* m_surf;
    QFrame* m_frame2;
    QFrame* m_frame4;
    KeyedTree* m_ssTree1;
    FavoritesTree* m_favorites;
    QuickButtons* m_quickButtons;
    GradientButton* m_saveBtn;
    GradientButton* m_orgFavBtn;
    GradientButton* m_refreshBtn;
    QWidget* m_favoritesCommands;
    WebForm1* m_webForm;
    QTimer* m_timer;
    QString m_helpFile;
    bool m_settingUp = true; // placement is not recorded while the window is being set up
    bool m_unloaded = false;
};
