// A run's next page loaded ahead of its step, beneath the page shown, so that at its moment it
// comes up at once instead of starting to load then. Until the step takes it, the window says
// nothing of it: its events wait on a tape and go out, in their order, as the step takes it, as if
// the page had loaded just then.
#include "WebBrowserWindow.h"

#include "BrowserFrame.h"
#include "BrowserPage.h"
#include "BrowserProfile.h"
#include "PageLook.h"

#include <QTimer>

namespace {
// A page loaded ahead that no step took in this time is let go: the run was held, or went
// elsewhere, and the page would be stale by its step.
constexpr int kAheadFreshMs = 20000;
// A page that sends more events than this before its step is let go, and loads at its step
// as any page does: nobody keeps a hostile page's flood.
constexpr int kLongestTape = 256;
} // namespace

void WebBrowserWindow::loadAhead(const QString& address, const PageSettings& look)
{
    dropAhead();
    // Only beneath a page in view: a window with nothing to show yet, or one in the middle of
    // bringing a page up, has no room for one more.
    if (!m_frame || m_page->url().isEmpty() || m_frame->isShowingCrash() || m_frame->hasStagedPage())
        return;
    auto* page = new BrowserPage(BrowserProfile::profile(), this);
    m_ahead = std::make_unique<Ahead>();
    m_ahead->page = page;
    m_ahead->address = address;
    m_ahead->number = ++m_aheadNumber;
    const quint64 number = m_ahead->number;
    attachPage(page);
    m_frame->stagePage(page);
    if (const double zoom = PageLook::fixedZoom(look); zoom > 0)
        page->setZoomFactor(zoom);
    connect(page, &QWebEnginePage::loadFinished, this, [this, page, look, number] {
        readyThen(page, look, [this, number] {
            if (m_frame && m_ahead && m_ahead->number == number)
                m_frame->whenStagedPageDrawn([this, number] { aheadDrawn(number); });
        });
    });
    QTimer::singleShot(kAheadFreshMs, this, [this, number] {
        if (m_ahead && m_ahead->number == number && !m_ahead->taken)
            dropAhead();
    });
    page->load(QUrl::fromUserInput(address));
}

void WebBrowserWindow::deliver(BrowserPage* from, std::function<void()> event)
{
    if (!m_ahead || m_ahead->page != from || m_ahead->played) {
        event();
        return;
    }
    m_ahead->tape.append(std::move(event));
    if (m_ahead->tape.size() > kLongestTape && !m_ahead->taken)
        QTimer::singleShot(0, this, [this, number = m_ahead->number] {
            if (m_ahead && m_ahead->number == number && !m_ahead->taken)
                dropAhead();
        });
}

bool WebBrowserWindow::takeAhead(const QString& address, int timeoutMs)
{
    if (!m_ahead || m_ahead->taken || m_ahead->address != address || !m_frame || !m_frame->hasStagedPage())
        return false;
    Ahead& ahead = *m_ahead;
    ahead.taken = true;
    // From now on the window's page is the one loaded ahead, as after any navigation.
    m_shownPage = m_page;
    m_shownPage->disconnect(this);
    m_page = ahead.page;
    ahead.staging = ++m_staging;
    m_zoomedByLook = PageLook::fixedZoom(m_look) > 0 || m_look.zoom == PageSettings::kFitWidth;
    m_lookPending = false; // it has its look; the scroll starts as it comes up
    m_documentTitle.clear();
    // Its events go out on the next turn of the event loop, as those of a page that starts to
    // load now would; any that come meanwhile wait behind them.
    QTimer::singleShot(0, this, [this, number = ahead.number] {
        if (!m_ahead || m_ahead->number != number)
            return;
        playTape();
        if (m_ahead && m_ahead->number == number && m_ahead->shown)
            m_ahead.reset();
    });
    const quint64 staging = ahead.staging;
    if (ahead.drawn) {
        showStagedPage(staging); // drawn already: up at this very moment
        return true;
    }
    // Still loading: it comes up once drawn (aheadDrawn), or at the time-out as far as it came.
    QTimer::singleShot(timeoutMs, this, [this, staging] { showStagedPage(staging); });
    return true;
}

void WebBrowserWindow::aheadDrawn(quint64 number)
{
    if (!m_ahead || m_ahead->number != number)
        return;
    m_ahead->drawn = true;
    if (m_ahead->taken)
        showStagedPage(m_ahead->staging);
}

void WebBrowserWindow::aheadShown()
{
    if (!m_ahead || !m_ahead->taken)
        return;
    m_ahead->shown = true;
    if (m_ahead->played)
        m_ahead.reset();
}

void WebBrowserWindow::playTape()
{
    if (!m_ahead)
        return;
    const QList<std::function<void()>> tape = std::exchange(m_ahead->tape, {});
    m_ahead->played = true;
    for (const auto& event : tape)
        event();
}

void WebBrowserWindow::settleAhead()
{
    if (!m_ahead)
        return;
    if (!m_ahead->taken) {
        dropAhead();
        return;
    }
    // Taken already, and the window goes on elsewhere: what the page did is told before it goes.
    playTape();
    m_ahead.reset();
}

void WebBrowserWindow::dropAhead()
{
    if (!m_ahead || m_ahead->taken)
        return;
    std::unique_ptr<Ahead> ahead = std::move(m_ahead);
    if (m_frame && m_frame->hasStagedPage())
        m_frame->discardStagedPage();
    ahead->page->disconnect(this);
    ahead->page->deleteLater();
}
