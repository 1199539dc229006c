#pragma once

#include "browser/BrowserWindow.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <array>
#include <functional>

class ScreenPlacer;
class WindowRecovery;

// The host of the eight browser windows, one per browsing slot (1 to 8). It shows nothing itself:
// it creates a slot's window on demand, sends it to CurrentUrl, brings one window into view, and
// turns the windows' events into updates of the shared state and into what the slot's row on the
// Surf tab and the history are told.
class WebForm1 : public QObject
{
    Q_OBJECT

public:
    using WindowFactory = std::function<BrowserWindow*(QObject* parent)>;

    explicit WebForm1(QObject* parent);
    ~WebForm1() override;

    // The form's load and unload: unloading quits every open window.
    void Load();
    void Unload();

    // Opens or reuses `slot` and sends it to CurrentUrl.
    void Form_LoadGo(int slot);
    // Creates (newWindow) or reuses the slot's window, shows it and sends it to CurrentUrl.
    void SelectieNavigate(int slot, bool newWindow);
    // Hides every open window, then shows the one of `slot`; windows in `spare` stay as they are.
    void SelectieWindow(int slot, const QSet<int>& spare = {});

    BrowserWindow* ie(int slot) const;
    bool SlotOpen(int slot) const;
    // The slot's fixed name, "Internet Explorer 1" to "Internet Explorer 8": its group in the history.
    static QString slotName(int slot);

    // The windows are made by this factory; the real browser window unless a test puts its own.
    void setWindowFactory(WindowFactory factory);

    // The recovery of crashed and unreachable pages; it tells each window's state.
    WindowRecovery* recovery() const { return m_recovery; }
    // Keeps each slot's window on the monitor it is fixed to.
    ScreenPlacer* placer() const { return m_placer; }

    // Set by the timed run around its own navigation: a page that replaces one comes up only once
    // it has loaded, when the settings ask for it.
    bool RunNavigating = false;
    // With it, how the run's page is shown (its page settings) and for how long.
    PageSettings RunLook;
    double RunLookSeconds = 0;
    // Set by a run that keeps its pages loaded, around bringing one forward in theater view: its
    // other windows stay on the screen beneath the front one instead of going out of view, so that
    // each comes forward by being raised, drawn all along.
    QSet<int> RunKeptBeneath;
    // The run's windows that stayed beneath go out of view now, all but `front`.
    void hideBeneath(const QSet<int>& windows, int front);

    // Loads the slot's page again where it stands, its window kept as the current one and its
    // page in view until the new one has loaded.
    void reloadInPlace(int slot, const QString& address, const PageSettings& look, double shownSeconds);
    // The slot's window takes the run keys, or gives them back to its pages.
    void setRunKeys(int slot, bool on);
    // A run's next page loaded ahead beneath the page the slot's window shows, to come up at once
    // at its step (when pages are shown only once loaded).
    void loadAhead(int slot, const QString& address, const PageSettings& look);

signals:
    // A document of the slot's window completed: the history records CurrentUrl and CurrentTitle.
    void documentCompleted(const QString& slotName);
    // A page asked for a new window showing `url`.
    void newWindowRequested(const QString& url, bool userInitiated);
    // What the slot's row shows: navigation begun (the address, in the active look), a document
    // completed (its address and the page's title), a new title, the window gone.
    void rowNavigating(int slot, const QString& address);
    void rowCompleted(int slot, const QString& url, const QString& title);
    void rowTitleChanged(int slot, const QString& title);
    void rowClosed(int slot);
    // The form unloaded: every window was told to quit.
    void unloadedPool();
    // A person clicked, scrolled, typed or touched in the slot's window; pressed a run key there.
    void personActed(int slot);
    void runKeyPressed(int slot, RunKey key);

private:
    void connectWindow(int slot, BrowserWindow* window);
    void BeforeNavigate2(int slot, const QString& url);
    void NavigateComplete2(const QString& url);
    void DocumentComplete(int slot, const QString& url);
    void TitleChange(int slot, const QString& title);
    void OnQuit(int slot, BrowserWindow* window);
    void MarkRowNavigating(int slot, const QString& address);
    void hideAllBut(int slot, const QSet<int>& spare);

    WindowFactory m_factory;
    WindowRecovery* m_recovery;
    ScreenPlacer* m_placer;
    std::array<QPointer<BrowserWindow>, 11> m_ie{};
    std::array<bool, 11> m_slotOpen{};
    quint64 m_bringing = 0; // the latest bringing forward: an earlier one that finishes late does nothing
};
