#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class About1;
class FavoritesPanel;
class OptionsPanel;
class ProgramSession;
class FavoritesTree;
class GradientButton;
class HelpWindow;
class HistoryPanel;
class KeyedTree;
class ListsPanel;
class QComboBox;
class QFrame;
class QTabWidget;
class QTimer;
class QuickButtons;
class Scheduler;
class SchedulesDialog;
class ScreensDialog;
class FavoritesSync;
class MqttDialog;
class MqttDoor;
class RemotePage;
class RemotePageDialog;
class SearchKeeper;
class SleepWatch;
class TreeSearch;
class SurfPanel;
class Verbs;
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
    // Runs the list chosen as start-up list, each page in a window of its own, once through.
    void StartStartupList();
    // The option values shown in the Options tab's controls.
    void ShowOptionControls();
    // Closes the browser windows, offers to save what changed, saves changed options.
    void Form_Unload();
    // The same for a caller from outside, who cannot be asked: what changed is saved, or with
    // `discard` thrown away.
    void unloadFromOutside(bool discard);

    // Opens CurrentUrl: the path every part of the program takes to show a page.
    void NewBtnAction(bool newWindow);
    // Collects the pages of a list (its name upper-cased) for a timed run; true when it has any.
    bool BuildRunList(const QString& upperName);
    // Shows the help (also F1).
    void showHelp();
    // Opens the about box, or brings the open one forward.
    void AboutBtn_Click();
    // Paints every control with the window colours, the bold option and the text style.
    void ApplyColors();

    // Tab change and resize rules; the window's placement into the options.
    void TabStrip1_Click();
    void Form_Resize();
    void RememberPlacement();
    void Timer1_Timer();

    SurfPanel* surf() const { return m_surf; }
    // What the program does: every button, dialog and door goes through it.
    Verbs* verbs() const { return m_verbs; }
    WebForm1* webForm() const;
    QTabWidget* TabStrip1() const { return m_tabStrip; }
    QFrame* Frame2() const { return m_frame2; }
    FavoritesPanel* favoritesPanel() const { return m_favoritesPanel; }
    ListsPanel* listsPanel() const { return m_listsPanel; }
    HistoryPanel* historyPanel() const { return m_historyPanel; }
    QComboBox* CMBLIST() const;
    OptionsPanel* optionsPanel() const { return m_options; }
    About1* aboutBox() const;
    HelpWindow* helpWindow() const { return m_help; }
    // Short ways to the Favorites tab's parts.
    KeyedTree* SSTree1() const;
    FavoritesTree* favorites() const;
    QuickButtons* quickButtons() const;
    GradientButton* SaveBtn() const;
    GradientButton* OrgFavBtn() const;
    GradientButton* RefreshBtn() const;
    QTimer* Timer1() const { return m_timer; }
    // The session kept for the start after a crash.
    ProgramSession* session() const { return m_session.get(); }
    // The rotations with hours (Schedules.conf), started and stopped on the wall clock.
    Scheduler* scheduler() const { return m_scheduler.get(); }
    // Opens the Schedules dialog (once; brought forward when it is open).
    void showSchedules();
    SchedulesDialog* schedulesDialog() const;
    void showScreens();
    // The MQTT dialog, showing how `door` stands (the door is the program's, made beside the window).
    void showMqtt();
    MqttDialog* mqttDialog() const;
    void setMqttDoor(MqttDoor* door) { m_mqttDoor = door; }
    // The Remote Page dialog, showing the address of `page` (the program's, made beside the window).
    void showRemotePage();
    RemotePageDialog* remotePageDialog() const;
    void setRemotePage(RemotePage* page) { m_remotePage = page; }
    ScreensDialog* screensDialog() const;
    QString helpFile() const { return m_helpFile; }
    // The one index of the three trees, and the search field above each tree.
    SearchKeeper* searchKeeper() const { return m_searchKeeper; }
    // The Favorites kept in step with a bookmarks file, when the person asked for it.
    FavoritesSync* favoritesSync() const { return m_favoritesSync; }
    TreeSearch* favoritesSearch() const { return m_favoritesSearch; }
    TreeSearch* listsSearch() const { return m_listsSearch; }
    TreeSearch* historySearch() const { return m_historySearch; }
    // Ctrl+F: the cursor in the search field of the tree on the tab in front (the Favorites' from
    // a tab without a tree of its own).
    void focusSearch();

    bool FirstShow = false;
    bool OptionsDirty = false;

signals:
    // The window has unloaded: the program ends.
    void unloaded();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void InitFormState();
    // Shows the shared Favorites tree panel in its place below the tab's own content.
    void placeFavoritesTree();
    int widthTwips() const;
    int heightTwips() const;
    // Fits the tabs that show the shared tree panel around it.
    void arrangeTreeTabs();
    // The height of the Favorites tab's panel above the tree, which decides how far the tree reaches.
    int frame4HeightTwips() const;
    // The search fields above the three trees, and Ctrl+F.
    void setUpSearch();

    QTabWidget* m_tabStrip;
    SurfPanel* m_surf;
    QFrame* m_frame2;
    FavoritesPanel* m_favoritesPanel;
    ListsPanel* m_listsPanel;
    HistoryPanel* m_historyPanel;
    OptionsPanel* m_options;
    QPointer<About1> m_about; // the box may be closed and deleted at any time
    HelpWindow* m_help = nullptr;
    Verbs* m_verbs;
    QTimer* m_timer;
    std::unique_ptr<ProgramSession> m_session;
    std::unique_ptr<Scheduler> m_scheduler;
    QPointer<SchedulesDialog> m_schedules;
    QPointer<ScreensDialog> m_screens;
    QPointer<MqttDialog> m_mqtt;
    MqttDoor* m_mqttDoor = nullptr;
    QPointer<RemotePageDialog> m_remoteDialog;
    RemotePage* m_remotePage = nullptr;
    std::unique_ptr<SleepWatch> m_sleep;
    SearchKeeper* m_searchKeeper = nullptr;
    FavoritesSync* m_favoritesSync = nullptr;
    TreeSearch* m_favoritesSearch = nullptr;
    TreeSearch* m_listsSearch = nullptr;
    TreeSearch* m_historySearch = nullptr;
    QString m_helpFile;
    bool m_settingUp = true; // placement is not recorded while the window is being set up
    // Until the window is first on screen, the desktop is still placing it (frames, decorations):
    // such moves are part of setting it up, not the user's.
    bool m_placedOnScreen = false;
    bool m_unloaded = false;
    // Closing for a caller from outside: the answer to every question to save.
    std::optional<bool> m_saveAnswer;
    bool keepChanges(const QString& question) const;
};
