#pragma once

#include "settings/PageSettings.h"
#include "settings/ScreenPlaces.h"

#include <QObject>
#include <QString>

#include <functional>

// The keys that steer a running list from its windows.
enum class RunKey
{
    PauseOrResume, // Ctrl+Shift+Space
    Next,          // Ctrl+Shift+Right
    Previous,      // Ctrl+Shift+Left
};

// One browsing slot's window as the pool drives it: created hidden, shown and hidden, put into
// theater (full-screen) mode, sent to an address, asked for its page title, told to quit. It
// reports navigation begun and completed, documents completed (per frame, sub-frames first), title
// changes, and its end.
class BrowserWindow : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void setVisible(bool visible) = 0;
    virtual bool isVisible() const = 0;
    virtual void setTheaterMode(bool on) = 0;
    virtual bool theaterMode() const = 0;
    // Loads the address as the user typed it.
    virtual void navigate(const QString& address) = 0;
    // The same, but the page shown now stays in view until the new one has loaded (or `timeoutMs`
    // passed), so that nobody sees a blank or half-drawn page; the events come as for navigate().
    virtual void navigateWhenReady(const QString& address, int timeoutMs)
    {
        Q_UNUSED(timeoutMs)
        navigate(address);
    }
    // A new window's first page: the window comes into view only once the page has loaded and been
    // drawn (or `timeoutMs` passed), so that nobody sees it empty; the events come as for navigate().
    virtual void navigateThenShow(const QString& address, int timeoutMs)
    {
        Q_UNUSED(timeoutMs)
        setVisible(true);
        navigate(address);
    }
    // Brings the window up over the others, its page drawn before it is on the screen; `then` once
    // it is up (the others may go then without the desktop showing between them).
    virtual void comeUp(const std::function<void()>& then)
    {
        setVisible(true);
        then();
    }
    // The page's title; the address when the page has none.
    virtual QString locationName() const = 0;
    // Closes and ends the window; quitted() follows.
    virtual void quit() = 0;
    // Loads again the address that failed to load, or whose page crashed.
    virtual void retry() = 0;
    // Stops the load under way; the page is then tried again with retry(), as a failed one is.
    virtual void stopLoading() = 0;
    // The process that draws the page (0 while it has none).
    virtual qint64 pageProcessId() const { return 0; }
    // Where the window stands when shown: where the desktop puts it (as it comes), full screen on a
    // monitor, at a rectangle of the desktop, or drawn out of sight while its monitor is missing.
    // A shown window goes there at once.
    virtual void setPlace(const WindowPlace& place) { m_place = place; }
    const WindowPlace& place() const { return m_place; }
    // Nothing shown: the window is black over all of its place (full screen where it has none),
    // as a screen with nothing scheduled; the next page it is sent to takes the black away.
    virtual void setBlackedOut(bool on) { m_blackedOut = on; }
    bool blackedOut() const { return m_blackedOut; }
    // The monitor the window stands on now, as the system names it (none while it is out of
    // sight), and whether it covers it.
    virtual QString monitor() const { return isVisible() ? m_place.screen : QString(); }
    virtual bool isFullScreen() const { return isVisible() && (theaterMode() || m_place.mode == WindowPlace::Mode::FullScreen); }

    // How the pages this window loads from now on are shown (a list's page settings): at the
    // zoom of `look`, set before the page comes up, and once in view scrolled as it says over
    // `shownSeconds`. Empty settings: as the page comes.
    virtual void setPageLook(const PageSettings& look, double shownSeconds)
    {
        Q_UNUSED(look)
        Q_UNUSED(shownSeconds)
    }
    // The page a run shows next in this window, loaded ahead beneath the page shown, at `look`'s
    // zoom: when navigateWhenReady() asks for that address, it comes up at once, and its events come
    // then, as if it had loaded at that moment. Nothing happens where no page is shown yet.
    virtual void loadAhead(const QString& address, const PageSettings& look)
    {
        Q_UNUSED(address)
        Q_UNUSED(look)
    }
    // The page comes into view again (a kept window brought forward): its scroll starts afresh.
    virtual void shownAgain() {}
    // The window belongs to a running list: it takes the run keys (runKeyPressed) instead of its page.
    virtual void setRunKeys(bool on) { Q_UNUSED(on) }

signals:
    void beforeNavigate(const QString& url);
    void navigateComplete(const QString& url);
    void documentComplete(const QString& url);
    void titleChange(const QString& title);
    // The window was closed, by the user or by quit().
    void quitted();
    // The top frame began to load `url`, finished loading it, or could not load it (`networkReason`
    // when the network was at fault: no name, refused, reset, timed out, unreachable).
    void loadBegan(const QString& url);
    void loadSucceeded(const QString& url);
    void loadFailed(const QString& url, const QString& reason, bool networkReason);
    // The page's process ended abnormally (crashed, killed, out of memory).
    void pageCrashed(const QString& url);
    // A page of this window asked for a new window showing `url`; `userInitiated` when the user
    // clicked for it, false when the page's script asked by itself.
    void newWindowRequested(const QString& url, bool userInitiated);
    // A person clicked, scrolled, typed or touched in the window (moving the pointer is not enough).
    void personActed();
    void runKeyPressed(RunKey key);

protected:
    bool m_blackedOut = false;

private:
    WindowPlace m_place;
};
