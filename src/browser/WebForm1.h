#pragma once

#include <QObject>
#include <QPointer>

#include <array>
#include <functional>

class BrowserWindow;
class SurfPanel;
class WindowRecovery;

// The host of the eight browser windows, one per browsing slot (1 to 8). It shows nothing itself:
// it creates a slot's window on demand, sends it to CurrentUrl, brings one window into view, and
// turns the windows' events into updates of the shared state, of the slot's row on the Surf tab and
// of the history.
class WebForm1 : public QObject
{
    Q_OBJECT

public:
    using WindowFactory = std::function<BrowserWindow*(QObject* parent)>;

    WebForm1(SurfPanel* rows, QObject* parent);
    ~WebForm1() override;

    // The form's load and unload: unloading quits every open window.
    void Load();
    void Unload();

    // Opens or reuses `slot` and sends it to CurrentUrl.
    void Form_LoadGo(int slot);
    // Creates (newWindow) or reuses the slot's window, shows it and sends it to CurrentUrl.
    void SelectieNavigate(int slot, bool newWindow);
    // Hides every open window, then shows the one of `slot`.
    void SelectieWindow(int slot);

    BrowserWindow* ie(int slot) const;
    bool SlotOpen(int slot) const;
    // The slot's fixed name, "Internet Explorer 1" to "Internet Explorer 8": its group in the history.
    static QString slotName(int slot);

    // The windows are made by this factory; the real browser window unless a test puts its own.
    void setWindowFactory(WindowFactory factory);

    // The recovery of crashed and unreachable pages, with the windows' states beside the rows.
    WindowRecovery* recovery() const { return m_recovery; }

signals:
    // A document of the slot's window completed: the history records CurrentUrl and CurrentTitle.
    void documentCompleted(const QString& slotName);
    // A page asked for a new window showing `url`.
    void newWindowRequested(const QString& url, bool userInitiated);

private:
    void connectWindow(int slot, BrowserWindow* window);
    void BeforeNavigate2(int slot, const QString& url);
    void NavigateComplete2(const QString& url);
    void DocumentComplete(int slot, const QString& url);
    void TitleChange(int slot, const QString& title);
    void OnQuit(int slot, BrowserWindow* window);
    void MarkRowNavigating(int slot, const QString& address);

    SurfPanel* m_rows;
    WindowFactory m_factory;
    WindowRecovery* m_recovery;
    std::array<QPointer<BrowserWindow>, 11> m_ie{};
    std::array<bool, 11> m_slotOpen{};
};
