#pragma once

#include "settings/ScreenPlaces.h"

#include <QWidget>

#include <functional>

class BrowserPage;
class QLabel;
class QLineEdit;
class QStackedLayout;
class QStackedWidget;
class QToolButton;
class QWebEngineDownloadRequest;
class QWebEnginePage;
class QWebEngineView;

// The top-level window of one browsing slot: a navigation bar (back, forward, reload or stop, the
// address), the page, a message bar for refused certificates and downloads, and a panel that
// stands in for a page whose renderer crashed, with a button to load it again.
class BrowserFrame : public QWidget
{
    Q_OBJECT

public:
    explicit BrowserFrame(BrowserPage* page);
    ~BrowserFrame() override;

    QWebEngineView* view() const { return m_view; }
    BrowserPage* page() const { return m_page; }

    // Theater mode: full screen without the navigation bar.
    void setTheaterMode(bool on);
    bool theaterMode() const { return m_theater; }
    // Where the window stands when shown (its monitor, full screen or a rectangle, or out of
    // sight); a shown window goes there at once.
    void setPlace(const WindowPlace& place);
    const WindowPlace& place() const { return m_place; }
    // A black curtain over the whole window, its navigation bar hidden, full screen unless its
    // place says otherwise: nothing shown.
    void setBlackedOut(bool on);
    bool blackedOut() const { return m_blackedOut; }
    // Shows the window in its current mode, in its place.
    void showInMode();
    // The window as shown, its page drawn, but not yet on the screen; showInMode() puts it there
    // with what it has drawn.
    void showOffScreen();
    bool isOffScreen() const;

    void showDownload(QWebEngineDownloadRequest* download);
    void showMessage(const QString& text);
    bool isShowingCrash() const;
    // Leaves the crash panel and loads the crashed page again (its Reload button does the same).
    void reloadAfterCrash();

    // A page that is being made ready lies under the shown one until promoteStagedPage() brings it
    // up in one step; the page shown before is then handed back to its owner.
    void stagePage(BrowserPage* next);
    BrowserPage* promoteStagedPage();
    void discardStagedPage();
    bool hasStagedPage() const { return m_nextView != nullptr; }
    // Calls `then` once the staged page has been drawn (at its view's next frame, or after a short
    // while where the view tells no frames).
    void whenStagedPageDrawn(std::function<void()> then);
    // The same for the page shown.
    void whenPageDrawn(std::function<void()> then);

    // The frame that shows `page`, if any.
    static BrowserFrame* frameOfPage(QWebEnginePage* page);

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void attachPage(BrowserPage* page);
    void whenDrawn(QWebEngineView* view, std::function<void()> then);
    void showCrash(const QString& address);
    void updateNavigation();
    void showInPlace();
    bool barHidden() const;
    WindowPlace m_place;
    bool m_blackedOut = false;
    QWidget* m_curtain = nullptr;

    BrowserPage* m_page;
    QWebEngineView* m_view;
    QWebEngineView* m_nextView = nullptr;
    QWidget* m_pageArea;
    QStackedLayout* m_pages;
    QWidget* m_navigationBar;
    QToolButton* m_back;
    QToolButton* m_forward;
    QToolButton* m_reloadStop;
    QLineEdit* m_address;
    QLabel* m_message;
    QStackedWidget* m_stack;
    QLabel* m_crashText;
    QString m_crashedAddress;
    bool m_loading = false;
    bool m_theater = false;
    bool m_closedOnce = false;
};
