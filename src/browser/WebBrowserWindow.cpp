#include "WebBrowserWindow.h"

#include "BrowserFrame.h"
#include "BrowserPage.h"
#include "BrowserProfile.h"
#include "InputWatch.h"
#include "PageLook.h"
#include "core/PageText.h"

#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>

#include <utility>

namespace {
// How long after the engine's load end the top frame's own report may still arrive. Pages where
// no script runs (error pages, PDF documents) never send one; the load end stands in for them.
constexpr int kReportGraceMs = 300;
// How long a loaded page that has drawn nothing of its own yet is waited for before it comes up
// all the same (a page of nothing but colours never draws "content"), and how often it is asked.
constexpr int kLongestContentWaitMs = 2000;
constexpr int kContentPollMs = 20;
} // namespace

WebBrowserWindow::WebBrowserWindow(QObject* parent)
    : BrowserWindow(parent), m_page(new BrowserPage(BrowserProfile::profile(), this))
{
    m_frame = new BrowserFrame(m_page);
    m_input = new InputWatch(m_frame);
    connect(m_input, &InputWatch::acted, this, &BrowserWindow::personActed);
    connect(m_input, &InputWatch::runKeyPressed, this, &BrowserWindow::runKeyPressed);
    attachPage(m_page);
    connect(m_frame, &BrowserFrame::closed, this, [this] {
        if (m_quitted)
            return;
        m_quitted = true;
        m_frame->hide();
        emit quitted();
    });
}

void WebBrowserWindow::attachPage(BrowserPage* page)
{
    // Each event goes through deliver(): a page loaded ahead of a run's step keeps its events
    // until the step takes it.
    connect(page, &BrowserPage::navigationRequested, this, [this, page](const QUrl& url, bool) {
        deliver(page, [this, url] { emit beforeNavigate(url.toString()); });
    });
    connect(page, &BrowserPage::frameReported, this, [this, page](const FrameReport::Report& report) {
        deliver(page, [this, report] { onFrameReport(report); });
    });
    connect(page, &QWebEnginePage::loadStarted, this, [this, page] {
        deliver(page, [this] {
            ++m_loadNumber;
            m_topCompleted = false;
        });
    });
    connect(page, &QWebEnginePage::loadFinished, this, [this, page] { deliver(page, [this] { onLoadFinished(); }); });
    connect(page, &QWebEnginePage::titleChanged, this, [this, page] { deliver(page, [this] { onTitleChanged(); }); });
    connect(page, &QWebEnginePage::loadingChanged, this, [this, page](const QWebEngineLoadingInfo& info) {
        deliver(page, [this, info] { onLoadingChanged(info); });
    });
    connect(page, &QWebEnginePage::renderProcessTerminated, this,
            [this, page](QWebEnginePage::RenderProcessTerminationStatus status, int) {
                if (status != QWebEnginePage::NormalTerminationStatus)
                    deliver(page, [this] { emit pageCrashed(m_page->url().toString()); });
            });
    connect(page, &QWebEnginePage::newWindowRequested, this, [this, page](QWebEngineNewWindowRequest& request) {
        // Not opened here: the pool opens it like any other page, in a slot of its own.
        deliver(page, [this, url = request.requestedUrl().toString(), user = request.isUserInitiated()] {
            emit newWindowRequested(url, user);
        });
    });
}

void WebBrowserWindow::navigateWhenReady(const QString& address, int timeoutMs)
{
    if (m_blackedOut)
        setBlackedOut(false); // a page again: the black goes
    if (takeAhead(address, timeoutMs))
        return; // loaded ahead: it comes up now, or as soon as it has loaded
    settleAhead();
    if (!m_frame || m_page->url().isEmpty() || m_frame->isShowingCrash()) {
        navigate(address); // nothing shown yet that could stand in while the page loads
        return;
    }
    // The shown page stays until the next one has loaded; the window's events come from the
    // next one from now on, as they would for any navigation.
    if (m_frame->hasStagedPage()) {
        m_frame->discardStagedPage();
        delete m_page; // a page that was being made ready and is no longer wanted
        m_page = m_shownPage;
    }
    m_shownPage = m_page;
    m_shownPage->disconnect(this);
    m_page = new BrowserPage(BrowserProfile::profile(), this);
    attachPage(m_page);
    m_frame->stagePage(m_page);
    const quint64 staging = ++m_staging;
    // Loaded, the page comes up once it has been drawn under the shown one, at its zoom, so that
    // no empty view or wrong zoom shows for an instant; a page that takes too long comes up as far
    // as it has come.
    BrowserPage* staged = m_page;
    connect(m_page, &QWebEnginePage::loadFinished, this, [this, staging, staged] {
        readyThen(staged, m_look, [this, staging] {
            if (m_frame)
                m_frame->whenStagedPageDrawn([this, staging] { showStagedPage(staging); });
        });
    });
    QTimer::singleShot(timeoutMs, this, [this, staging] { showStagedPage(staging); });
    zoomBeforeLoad(m_page);
    m_lookPending = false; // the look follows when the page comes up
    m_page->load(QUrl::fromUserInput(address));
}

void WebBrowserWindow::navigateThenShow(const QString& address, int timeoutMs)
{
    if (!m_frame)
        return;
    if (m_blackedOut)
        setBlackedOut(false);
    const quint64 showing = ++m_showing;
    auto bringUp = [this, showing] {
        if (showing != m_showing || !m_frame || !m_frame->isOffScreen())
            return;
        m_frame->showInMode();
    };
    // Loaded and drawn at its size (and its zoom) off the screen, it comes up whole.
    connect(m_page, &QWebEnginePage::loadFinished, this, [this, bringUp] {
        readyThen(m_page, m_look, [this, bringUp] {
            startScroll();
            if (m_frame)
                m_frame->whenPageDrawn(bringUp);
        });
    }, Qt::SingleShotConnection);
    QTimer::singleShot(timeoutMs, this, bringUp);
    m_frame->showOffScreen();
    navigate(address);
    m_lookPending = false; // the look comes with the bringing up, above
}

void WebBrowserWindow::comeUp(const std::function<void()>& then)
{
    if (!m_frame) {
        then();
        return;
    }
    const quint64 showing = ++m_showing;
    auto up = [this, showing, then] {
        if (m_frame && showing == m_showing) {
            m_frame->showInMode();
            m_frame->raise();
            m_frame->activateWindow();
        }
        then();
    };
    if (m_frame->isVisible() && !m_frame->isOffScreen()) {
        up(); // on the screen already: only raised
        return;
    }
    // Drawn again off the screen first: a window that was hidden comes up with its page, not empty.
    m_frame->showOffScreen();
    m_frame->whenPageDrawn(up);
}

void WebBrowserWindow::setPageLook(const PageSettings& look, double shownSeconds)
{
    m_look = look;
    m_lookSeconds = shownSeconds;
}

void WebBrowserWindow::setRunKeys(bool on)
{
    m_input->takeRunKeys = on;
}

void WebBrowserWindow::shownAgain()
{
    startScroll();
}

void WebBrowserWindow::zoomBeforeLoad(BrowserPage* page)
{
    if (const double zoom = PageLook::fixedZoom(m_look); zoom > 0) {
        page->setZoomFactor(zoom);
        m_zoomedByLook = true;
    } else if (m_zoomedByLook) {
        page->setZoomFactor(1.0); // the last look's zoom goes with it; a person's own stays
        m_zoomedByLook = false;
    }
}

void WebBrowserWindow::fitThen(BrowserPage* page, const PageSettings& look, std::function<void()> then)
{
    if (look.zoom != PageSettings::kFitWidth) {
        then();
        return;
    }
    QPointer<BrowserPage> guard(page);
    page->runJavaScript(PageLook::widthProbe(), QWebEngineScript::ApplicationWorld,
                        [this, guard, then = std::move(then)](const QVariant& result) {
                            if (!guard)
                                return; // the page went, and its window with it
                            const QVariantList widths = result.toList();
                            if (widths.size() == 2) {
                                guard->setZoomFactor(PageLook::fitZoom(widths[0].toDouble(), widths[1].toDouble(),
                                                                       guard->zoomFactor()));
                                m_zoomedByLook = true;
                            }
                            then();
                        });
}

void WebBrowserWindow::readyThen(BrowserPage* page, const PageSettings& look, std::function<void()> then)
{
    pollContent(page, QDeadlineTimer(kLongestContentWaitMs),
                [this, guard = QPointer<BrowserPage>(page), look, then = std::move(then)]() mutable {
                    if (guard)
                        fitThen(guard, look, std::move(then));
                });
}

void WebBrowserWindow::pollContent(const QPointer<BrowserPage>& page, const QDeadlineTimer& until,
                                   std::function<void()> then)
{
    if (!page)
        return; // the page went, and what waited for it with it
    page->runJavaScript(PageLook::contentProbe(), QWebEngineScript::ApplicationWorld,
                        [this, page, until, then = std::move(then)](const QVariant& drawn) mutable {
                            // No answer at all: the page is going away (the engine answers what
                            // was still asked of it as it goes). The time-out of the caller stands.
                            if (!page || !drawn.isValid())
                                return;
                            if (drawn.toBool() || until.hasExpired()) {
                                then();
                                return;
                            }
                            QTimer::singleShot(kContentPollMs, this,
                                               [this, page, until, then = std::move(then)]() mutable {
                                                   pollContent(page, until, std::move(then));
                                               });
                        });
}

void WebBrowserWindow::startScroll()
{
    const QString script = PageLook::scrollScript(m_look, m_lookSeconds);
    if (!script.isEmpty())
        m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld);
}

void WebBrowserWindow::showStagedPage(quint64 staging)
{
    if (staging != m_staging || !m_frame || !m_frame->hasStagedPage())
        return;
    BrowserPage* old = m_frame->promoteStagedPage();
    if (old && old != m_page)
        old->deleteLater();
    m_shownPage = nullptr;
    aheadShown();
    startScroll();
}

WebBrowserWindow::~WebBrowserWindow()
{
    delete m_frame; // before the page it shows, which is a child of this object
}

void WebBrowserWindow::navigate(const QString& address)
{
    if (m_blackedOut)
        setBlackedOut(false);
    settleAhead(); // the window goes elsewhere than the run planned
    zoomBeforeLoad(m_page);
    m_lookPending = m_look.zoom == PageSettings::kFitWidth || m_look.scroll != PageSettings::Scroll::None;
    m_page->load(QUrl::fromUserInput(address));
}

QString WebBrowserWindow::locationName() const
{
    return m_documentTitle.isEmpty() ? m_page->url().toString() : m_documentTitle;
}

void WebBrowserWindow::quit()
{
    if (m_frame)
        m_frame->close();
}

void WebBrowserWindow::retry()
{
    if (m_frame && m_frame->isShowingCrash()) {
        m_frame->reloadAfterCrash();
        return;
    }
    m_page->load(m_failedUrl.isValid() ? m_failedUrl : m_page->url());
}

qint64 WebBrowserWindow::pageProcessId() const
{
    return m_page->renderProcessPid();
}

void WebBrowserWindow::stopLoading()
{
    // The address asked for, not the one shown before it: the retry loads what got stuck.
    if (m_page->requestedUrl().isValid())
        m_failedUrl = m_page->requestedUrl();
    m_page->triggerAction(QWebEnginePage::Stop);
}

void WebBrowserWindow::onLoadingChanged(const QWebEngineLoadingInfo& info)
{
    const QString url = info.url().toString();
    switch (info.status()) {
    case QWebEngineLoadingInfo::LoadStartedStatus:
        emit loadBegan(url);
        break;
    case QWebEngineLoadingInfo::LoadSucceededStatus:
        m_failedUrl.clear();
        emit loadSucceeded(url);
        break;
    case QWebEngineLoadingInfo::LoadFailedStatus: {
        // A server that answered (an HTTP error) or a refused certificate is no network failure.
        const bool network = info.errorDomain() == QWebEngineLoadingInfo::ConnectionErrorDomain ||
                             info.errorDomain() == QWebEngineLoadingInfo::DnsErrorDomain;
        m_failedUrl = info.url();
        emit loadFailed(url, info.errorString(), network);
        break;
    }
    case QWebEngineLoadingInfo::LoadStoppedStatus:
        break;
    }
}

void WebBrowserWindow::onFrameReport(const FrameReport::Report& report)
{
    if (report.kind == FrameReport::Report::Created) {
        if (report.topFrame)
            m_documentTitle.clear(); // a new top document: its title is not known yet
        emit navigateComplete(addressOf(report.url));
        return;
    }
    if (report.topFrame) {
        m_topCompleted = true;
        if (!report.title.isEmpty())
            m_documentTitle = report.title;
    }
    emit documentComplete(addressOf(report.url));
}

QString WebBrowserWindow::addressOf(const QString& reported) const
{
    if (!reported.startsWith(QLatin1String("chrome-error:")))
        return reported;
    // The error page may report itself before the engine tells the load failed.
    const QUrl failed = m_failedUrl.isValid() ? m_failedUrl : m_page->requestedUrl();
    return failed.isValid() ? failed.toString() : reported;
}

void WebBrowserWindow::onLoadFinished()
{
    if (std::exchange(m_lookPending, false))
        fitThen(m_page, m_look, [this] { startScroll(); });
    const quint64 load = m_loadNumber;
    QTimer::singleShot(kReportGraceMs, this, [this, load] {
        if (load != m_loadNumber || m_topCompleted)
            return;
        m_topCompleted = true;
        const QString url = addressOf(m_page->url().toString());
        emit navigateComplete(url);
        emit documentComplete(url);
    });
}

void WebBrowserWindow::onTitleChanged()
{
    // The engine names an untitled page after its address; only a title the document itself
    // carries counts as a title change.
    const quint64 load = m_loadNumber;
    m_page->runJavaScript(QStringLiteral("document.title.slice(0, %1)").arg(kMaxPageTextLength),
                          QWebEngineScript::ApplicationWorld,
                          [self = QPointer<WebBrowserWindow>(this), load](const QVariant& result) {
                              if (!self || load != self->m_loadNumber)
                                  return;
                              const QString title = result.toString();
                              if (title.isEmpty() || title == self->m_documentTitle)
                                  return;
                              self->m_documentTitle = title;
                              emit self->titleChange(title);
                          });
}
