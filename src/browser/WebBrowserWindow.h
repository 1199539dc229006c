#pragma once

#include "BrowserFrame.h"
#include "BrowserWindow.h"

#include <QDeadlineTimer>
#include <QPointer>
#include <QUrl>

#include <functional>
#include <memory>

class BrowserPage;
class InputWatch;
class QWebEngineLoadingInfo;

namespace FrameReport {
struct Report;
}

// A browsing slot's window on the real browser engine.
class WebBrowserWindow : public BrowserWindow
{
    Q_OBJECT

public:
    explicit WebBrowserWindow(QObject* parent = nullptr);
    ~WebBrowserWindow() override;

    void setVisible(bool visible) override;
    bool isVisible() const override;
    void setTheaterMode(bool on) override;
    bool theaterMode() const override;
    void navigate(const QString& address) override;
    QString locationName() const override;
    void quit() override;
    void retry() override;
    void stopLoading() override;
    qint64 pageProcessId() const override;
    void setPlace(const WindowPlace& place) override;
    void setBlackedOut(bool on) override;
    QString monitor() const override;
    bool isFullScreen() const override;
    void navigateWhenReady(const QString& address, int timeoutMs) override;
    void navigateThenShow(const QString& address, int timeoutMs) override;
    void comeUp(const std::function<void()>& then) override;
    void setPageLook(const PageSettings& look, double shownSeconds) override;
    void shownAgain() override;
    void setRunKeys(bool on) override;
    void loadAhead(const QString& address, const PageSettings& look) override;

    BrowserFrame* frame() const { return m_frame; }
    BrowserPage* page() const { return m_page; }

private:
    // A run's next page loaded ahead beneath the shown one, its events held on a tape until the
    // run's step takes it.
    struct Ahead
    {
        BrowserPage* page = nullptr;
        QString address;
        quint64 number = 0;
        bool drawn = false;   // loaded, at its zoom, and drawn beneath the shown page
        bool taken = false;   // the step took it: it comes up once drawn
        bool played = false;  // its tape was played: its events go out as they come
        bool shown = false;   // up in the window
        quint64 staging = 0;  // the staging it became when taken
        QList<std::function<void()>> tape;
    };

    void attachPage(BrowserPage* page);
    // Reports the page's event now, or holds it on the tape while its page is loaded ahead.
    void deliver(BrowserPage* from, std::function<void()> event);
    // The page loaded ahead for `address` becomes the window's page; false when there is none.
    bool takeAhead(const QString& address, int timeoutMs);
    // A page loaded ahead and not taken goes; one taken has its events told, and is the window's.
    void settleAhead();
    void dropAhead();
    void aheadDrawn(quint64 number);
    void aheadShown();
    void playTape();
    void showStagedPage(quint64 staging);
    void onFrameReport(const FrameReport::Report& report);
    void onLoadFinished();
    // The address a document reports, but for the engine's own error page: the address that
    // failed, where the window still is as far as anybody using it is concerned.
    QString addressOf(const QString& reported) const;
    void onTitleChanged();
    void onLoadingChanged(const QWebEngineLoadingInfo& info);
    // The look's zoom on a page about to load; a fit to the width once it has loaded, then `then`.
    void zoomBeforeLoad(BrowserPage* page);
    void fitThen(BrowserPage* page, const PageSettings& look, std::function<void()> then);
    // A loaded page that is to come up whole: once it has drawn content of its own (or a while
    // passed), fitted to the look, then `then`.
    void readyThen(BrowserPage* page, const PageSettings& look, std::function<void()> then);
    void pollContent(const QPointer<BrowserPage>& page, const QDeadlineTimer& until, std::function<void()> then);
    void startScroll();

    QPointer<BrowserFrame> m_frame;
    BrowserPage* m_page;               // the page whose events the window reports
    BrowserPage* m_shownPage = nullptr; // the page still shown while m_page is made ready
    quint64 m_staging = 0;
    quint64 m_showing = 0; // the new window's first page that is to bring it into view
    QString m_documentTitle;     // the top document's own title; "" when it has none
    bool m_topCompleted = false; // the top frame reported its load for the current navigation
    quint64 m_loadNumber = 0;
    bool m_quitted = false;
    QUrl m_failedUrl; // the address whose load failed last, tried again by retry()
    InputWatch* m_input;
    PageSettings m_look;
    double m_lookSeconds = 0;
    bool m_lookPending = false;  // the page loading now is to get the look once loaded
    bool m_zoomedByLook = false; // the zoom is the look's, not the person's own
    std::unique_ptr<Ahead> m_ahead;
    quint64 m_aheadNumber = 0;
};
