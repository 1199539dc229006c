#include "WebForm1.h"

#include "browser/BrowserEngine.h"
#include "browser/BrowserWindow.h"
#include "core/Globals.h"
#include "core/PageText.h"
#include "settings/VantrelConf.h"
#include "screens/ScreenPlacer.h"
#include "watch/WindowRecovery.h"

namespace {
bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}
} // namespace

WebForm1::WebForm1(QObject* parent)
    : QObject(parent), m_factory(&BrowserEngine::createWindow), m_recovery(new WindowRecovery(this)),
      m_placer(new ScreenPlacer(this))
{
    setObjectName(QStringLiteral("WebForm1"));
}

WebForm1::~WebForm1() = default; // the windows are children: they go with the form

void WebForm1::setWindowFactory(WindowFactory factory)
{
    m_factory = std::move(factory);
}

QString WebForm1::slotName(int slot)
{
    return QStringLiteral("Internet Explorer %1").arg(slot);
}

BrowserWindow* WebForm1::ie(int slot) const
{
    return slot >= 0 && slot <= 10 ? m_ie[size_t(slot)].data() : nullptr;
}

bool WebForm1::SlotOpen(int slot) const
{
    return slot >= 0 && slot <= 10 && m_slotOpen[size_t(slot)];
}

void WebForm1::Load()
{
    m_slotOpen.fill(false);
    globals().WebFormBusy = true;
}

void WebForm1::Unload()
{
    Globals& g = globals();
    g.WebFormBusy = false;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        if (m_slotOpen[size_t(slot)] && m_ie[size_t(slot)])
            m_ie[size_t(slot)]->quit();
    if (g.WindowCount < 0)
        g.WindowCount = 0;
    if (g.WindowIndex >= 0 && g.WindowIndex <= 10)
        g.WindowUrl[g.WindowIndex].clear();
    emit unloadedPool();
    g.LastWindowMode = false;
}

void WebForm1::Form_LoadGo(int slot)
{
    Globals& g = globals();
    if (slot < 0 || slot > 10)
        return; // outside the address array: the call ends here
    g.WindowIndex = slot;
    SelectieNavigate(slot, g.WindowUrl[slot].isEmpty());
    g.WindowUrl[slot] = g.CurrentUrl;
}

void WebForm1::SelectieNavigate(int slot, bool newWindow)
{
    if (!isSlot(slot))
        return;
    const Globals& g = globals();
    auto& window = m_ie[size_t(slot)];
    if (newWindow) {
        // A window held before is let go, not closed: it lives on without a slot until closed.
        if (window)
            window->disconnect(this);
        window = m_factory(this);
        if (window)
            connectWindow(slot, window);
    }
    if (!window)
        return; // the slot's window is gone: nothing happens
    // A run's page gets its own look; any other page comes as it is.
    if (RunNavigating)
        window->setPageLook(RunLook, RunLookSeconds);
    else
        window->setPageLook(PageSettings(), 0);
    const bool showWhenLoaded = RunNavigating && VantrelConf::flag(VantrelConf::kShowWhenLoaded);
    // A run's new window, or one of its windows out of view, comes into view with its page loaded
    // and drawn, never empty: a hidden window mapped again has nothing drawn until its page is.
    if ((newWindow || !window->isVisible()) && showWhenLoaded) {
        window->setTheaterMode(g.OptTheater);
        window->navigateThenShow(g.CurrentUrl, 1000 * VantrelConf::value(VantrelConf::kReadySeconds));
        m_recovery->sentTo(slot, g.CurrentUrl);
        m_slotOpen[size_t(slot)] = true;
        return;
    }
    if (slot == 1 && !newWindow)
        window->setVisible(true);
    window->setTheaterMode(g.OptTheater);
    window->setVisible(true);
    // A run's next page in a window that shows one already comes up only once it has loaded.
    if (!newWindow && showWhenLoaded)
        window->navigateWhenReady(g.CurrentUrl, 1000 * VantrelConf::value(VantrelConf::kReadySeconds));
    else
        window->navigate(g.CurrentUrl);
    m_recovery->sentTo(slot, g.CurrentUrl);
    m_slotOpen[size_t(slot)] = true;
}

void WebForm1::reloadInPlace(int slot, const QString& address, const PageSettings& look, double shownSeconds)
{
    BrowserWindow* window = ie(slot);
    if (!window)
        return;
    window->setPageLook(look, shownSeconds);
    if (VantrelConf::flag(VantrelConf::kShowWhenLoaded))
        window->navigateWhenReady(address, 1000 * VantrelConf::value(VantrelConf::kReadySeconds));
    else
        window->navigate(address);
    m_recovery->sentTo(slot, address);
}

void WebForm1::loadAhead(int slot, const QString& address, const PageSettings& look)
{
    if (BrowserWindow* window = ie(slot))
        window->loadAhead(address, look);
}

void WebForm1::setRunKeys(int slot, bool on)
{
    if (BrowserWindow* window = ie(slot))
        window->setRunKeys(on);
}

void WebForm1::SelectieWindow(int slot, const QSet<int>& spare)
{
    // A run's kept window comes up over the others before they go, so that the desktop never
    // shows between them.
    const quint64 turn = ++m_bringing;
    if (RunNavigating && isSlot(slot) && m_ie[size_t(slot)]) {
        m_ie[size_t(slot)]->comeUp([this, turn, slot, spare = spare + RunKeptBeneath] {
            if (turn == m_bringing)
                hideAllBut(slot, spare);
        });
        return;
    }
    hideAllBut(0, spare);
    if (isSlot(slot) && m_ie[size_t(slot)])
        m_ie[size_t(slot)]->setVisible(true);
}

void WebForm1::hideBeneath(const QSet<int>& windows, int front)
{
    ++m_bringing; // a window still coming forward hides nothing after this
    for (int s : windows)
        if (s != front && isSlot(s) && m_slotOpen[size_t(s)] && m_ie[size_t(s)])
            m_ie[size_t(s)]->setVisible(false);
}

void WebForm1::hideAllBut(int slot, const QSet<int>& spare)
{
    for (int s = 1; s <= kWindowSlots; ++s)
        if (s != slot && m_slotOpen[size_t(s)] && m_ie[size_t(s)] && !spare.contains(s))
            m_ie[size_t(s)]->setVisible(false);
}

void WebForm1::connectWindow(int slot, BrowserWindow* window)
{
    // Every title and address a page hands over is cut to its bound on the way in.
    connect(window, &BrowserWindow::beforeNavigate, this,
            [this, slot](const QString& url) { BeforeNavigate2(slot, boundedPageText(url)); });
    connect(window, &BrowserWindow::navigateComplete, this,
            [this](const QString& url) { NavigateComplete2(boundedPageText(url)); });
    connect(window, &BrowserWindow::documentComplete, this,
            [this, slot](const QString& url) { DocumentComplete(slot, boundedPageText(url)); });
    connect(window, &BrowserWindow::titleChange, this,
            [this, slot](const QString& title) { TitleChange(slot, boundedPageText(title)); });
    connect(window, &BrowserWindow::quitted, this, [this, slot, window] { OnQuit(slot, window); });
    m_recovery->watch(slot, window);
    m_placer->attach(slot, window); // in its place before it is first shown
    connect(window, &BrowserWindow::personActed, this, [this, slot] { emit personActed(slot); });
    connect(window, &BrowserWindow::runKeyPressed, this, [this, slot](RunKey key) { emit runKeyPressed(slot, key); });
    connect(window, &BrowserWindow::newWindowRequested, this,
            [this](const QString& url, bool userInitiated) {
                emit newWindowRequested(boundedPageText(url), userInitiated);
            });
}

void WebForm1::BeforeNavigate2(int slot, const QString& url)
{
    globals().WindowIndex = slot;
    MarkRowNavigating(slot, url);
}

void WebForm1::NavigateComplete2(const QString& url)
{
    globals().CurrentUrl = url;
}

void WebForm1::DocumentComplete(int slot, const QString& url)
{
    Globals& g = globals();
    g.CurrentUrl = url;
    if (BrowserWindow* window = ie(slot))
        g.CurrentTitle = boundedPageText(window->locationName());
    emit rowCompleted(slot, url, g.CurrentTitle);
    emit documentCompleted(slotName(slot));
}

void WebForm1::TitleChange(int slot, const QString& title)
{
    emit rowTitleChanged(slot, title);
}

void WebForm1::OnQuit(int slot, BrowserWindow* window)
{
    Globals& g = globals();
    emit rowClosed(slot);
    g.WindowUrl[slot].clear();
    m_slotOpen[size_t(slot)] = false;
    if (m_ie[size_t(slot)] == window)
        m_ie[size_t(slot)] = nullptr;
    window->disconnect(this);
    m_recovery->forget(slot);
    if (m_ie[size_t(slot)] == nullptr)
        m_placer->attach(slot, nullptr);
    window->deleteLater();
    g.WindowCount = g.WindowCount - 1;
}

void WebForm1::MarkRowNavigating(int slot, const QString& address)
{
    Globals& g = globals();
    g.WindowFlagB = true;
    emit rowNavigating(slot, address);
    g.WindowFlagB = false;
}
