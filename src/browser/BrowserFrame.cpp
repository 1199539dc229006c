#include "BrowserFrame.h"

#include "BrowserPage.h"
#include "DownloadHandler.h"
#include "core/PageText.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QQuickWidget>
#include <QQuickWindow>
#include <QGuiApplication>
#include <QScreen>
#include <QStackedLayout>
#include <QTimer>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>
#include <utility>
#include <QWebEngineCertificateError>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEnginePage>
#include <QWebEngineView>

namespace {
const char kFrameProperty[] = "vantrelFrame";
}

BrowserFrame::BrowserFrame(BrowserPage* page) : QWidget(nullptr), m_page(page)
{
    setObjectName(QStringLiteral("BrowserFrame"));
    // A download shows in the window whose page started it.
    DownloadHandler::setWatcher([](QWebEngineDownloadRequest* download) {
        QWebEnginePage* page = download->page();
        if (BrowserFrame* frame = page ? frameOfPage(page) : nullptr)
            frame->showDownload(download);
    });
    setAttribute(Qt::WA_DeleteOnClose, false); // the pool decides when the window goes
    resize(1024, 768);

    m_navigationBar = new QWidget(this);
    m_navigationBar->setObjectName(QStringLiteral("NavigationBar"));
    auto* bar = new QHBoxLayout(m_navigationBar);
    bar->setContentsMargins(4, 4, 4, 4);
    auto makeButton = [this, bar](const char* name, QStyle::StandardPixmap icon, const QString& tip) {
        auto* b = new QToolButton(m_navigationBar);
        b->setObjectName(QString::fromLatin1(name));
        b->setIcon(style()->standardIcon(icon));
        b->setToolTip(tip);
        b->setAccessibleName(tip);
        b->setAutoRaise(true);
        bar->addWidget(b);
        return b;
    };
    m_back = makeButton("BackBtn", QStyle::SP_ArrowBack, tr("Back"));
    m_forward = makeButton("ForwardBtn", QStyle::SP_ArrowForward, tr("Forward"));
    m_reloadStop = makeButton("ReloadBtn", QStyle::SP_BrowserReload, tr("Reload"));
    m_address = new QLineEdit(m_navigationBar);
    m_address->setObjectName(QStringLiteral("AddressEdit"));
    m_address->setAccessibleName(tr("Address"));
    m_address->setClearButtonEnabled(true);
    bar->addWidget(m_address, 1);

    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("MessageBar"));
    m_message->setWordWrap(true);
    m_message->setContentsMargins(8, 4, 8, 4);
    m_message->setAutoFillBackground(true);
    m_message->setBackgroundRole(QPalette::ToolTipBase);
    m_message->setForegroundRole(QPalette::ToolTipText);
    m_message->hide();

    // The pages lie on top of each other: a page being made ready lies under the shown one, fully
    // rendered but covered, until it comes up in one step.
    m_pageArea = new QWidget(this);
    m_pageArea->setObjectName(QStringLiteral("PageArea"));
    m_pages = new QStackedLayout(m_pageArea);
    m_pages->setStackingMode(QStackedLayout::StackAll);
    m_pages->setContentsMargins(0, 0, 0, 0);
    m_view = new QWebEngineView(m_pageArea);
    m_view->setObjectName(QStringLiteral("PageView"));
    m_view->setPage(page);
    m_pages->addWidget(m_view);

    auto* crash = new QWidget(this);
    crash->setObjectName(QStringLiteral("CrashPanel"));
    auto* crashLayout = new QVBoxLayout(crash);
    m_crashText = new QLabel(crash);
    m_crashText->setObjectName(QStringLiteral("CrashText"));
    m_crashText->setWordWrap(true);
    m_crashText->setAlignment(Qt::AlignCenter);
    auto* reload = new QPushButton(tr("Load the page again"), crash);
    reload->setObjectName(QStringLiteral("CrashReloadBtn"));
    crashLayout->addStretch();
    crashLayout->addWidget(m_crashText);
    crashLayout->addWidget(reload, 0, Qt::AlignCenter);
    crashLayout->addStretch();

    m_stack = new QStackedWidget(this);
    m_stack->addWidget(m_pageArea);
    m_stack->addWidget(crash);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_navigationBar);
    layout->addWidget(m_message);
    layout->addWidget(m_stack, 1);

    connect(m_back, &QToolButton::clicked, this, [this] { m_page->triggerAction(QWebEnginePage::Back); });
    connect(m_forward, &QToolButton::clicked, this, [this] { m_page->triggerAction(QWebEnginePage::Forward); });
    connect(m_reloadStop, &QToolButton::clicked, this,
            [this] { m_page->triggerAction(m_loading ? QWebEnginePage::Stop : QWebEnginePage::Reload); });
    connect(m_address, &QLineEdit::returnPressed, this, [this] {
        const QUrl url = QUrl::fromUserInput(m_address->text().trimmed());
        if (url.isValid())
            m_page->load(url);
    });
    connect(reload, &QPushButton::clicked, this, &BrowserFrame::reloadAfterCrash);
    attachPage(page);
}

void BrowserFrame::attachPage(BrowserPage* page)
{
    m_page = page;
    page->setProperty(kFrameProperty, QVariant::fromValue(static_cast<QObject*>(this)));
    connect(page, &QWebEnginePage::urlChanged, this, [this](const QUrl& url) {
        if (!m_address->hasFocus())
            m_address->setText(boundedPageText(url.toDisplayString()));
        updateNavigation();
    });
    connect(page, &QWebEnginePage::titleChanged, this,
            [this](const QString& title) { setWindowTitle(boundedPageText(title)); });
    connect(page, &QWebEnginePage::iconChanged, this, [this](const QIcon& icon) { setWindowIcon(icon); });
    connect(page, &QWebEnginePage::loadStarted, this, [this] {
        m_loading = true;
        m_message->hide();
        updateNavigation();
    });
    connect(page, &QWebEnginePage::loadFinished, this, [this] {
        m_loading = false;
        updateNavigation();
    });
    connect(page, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus status, int) {
                if (status != QWebEnginePage::NormalTerminationStatus)
                    showCrash(m_page->url().toString());
            });
    connect(page, &QWebEnginePage::certificateError, this, [this](const QWebEngineCertificateError& error) {
        QWebEngineCertificateError refused = error;
        refused.rejectCertificate();
        showMessage(tr("The connection to %1 was refused: its certificate is not trusted (%2).")
                        .arg(error.url().host(), error.description()));
    });
    m_address->setText(boundedPageText(page->url().toDisplayString()));
    setWindowTitle(boundedPageText(page->title()));
    updateNavigation();
}

void BrowserFrame::stagePage(BrowserPage* next)
{
    discardStagedPage();
    m_nextView = new QWebEngineView(m_pageArea);
    m_nextView->setObjectName(QStringLiteral("NextPageView"));
    m_nextView->setPage(next);
    next->setProperty(kFrameProperty, QVariant::fromValue(static_cast<QObject*>(this)));
    m_pages->addWidget(m_nextView);
    m_pages->setCurrentWidget(m_view); // the shown page stays on top
    // A refused certificate of the page being made ready is refused all the same.
    connect(next, &QWebEnginePage::certificateError, this, [](const QWebEngineCertificateError& error) {
        QWebEngineCertificateError refused = error;
        refused.rejectCertificate();
    });
}

BrowserPage* BrowserFrame::promoteStagedPage()
{
    if (!m_nextView)
        return nullptr;
    BrowserPage* old = m_page;
    QWebEngineView* oldView = m_view;
    old->disconnect(this);
    auto* next = static_cast<BrowserPage*>(m_nextView->page());
    next->disconnect(this);
    m_view = m_nextView;
    m_view->setObjectName(QStringLiteral("PageView"));
    m_nextView = nullptr;
    m_pages->setCurrentWidget(m_view); // up in one step: it has been drawn already
    m_pages->removeWidget(oldView);
    oldView->setPage(nullptr);
    delete oldView;
    attachPage(next);
    return old;
}

void BrowserFrame::whenStagedPageDrawn(std::function<void()> then)
{
    whenDrawn(m_nextView, std::move(then));
}

void BrowserFrame::whenPageDrawn(std::function<void()> then)
{
    whenDrawn(m_view, std::move(then));
}

void BrowserFrame::whenDrawn(QWebEngineView* view, std::function<void()> then)
{
    if (!view) {
        then();
        return;
    }
    constexpr int kLongestWaitForAFrameMs = 250;
    auto once = std::make_shared<std::function<void()>>(std::move(then));
    auto fire = [once] {
        if (*once)
            std::exchange(*once, nullptr)();
    };
    // The engine draws a page into a Qt Quick widget inside the view; once that has rendered,
    // the page is on its surface, ready to come up.
    if (auto* surface = qobject_cast<QQuickWidget*>(view->focusProxy())) {
        if (QQuickWindow* window = surface->quickWindow())
            connect(window, &QQuickWindow::afterRendering, this, fire,
                    Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
        surface->update();
    }
    QTimer::singleShot(kLongestWaitForAFrameMs, this, fire);
}

void BrowserFrame::discardStagedPage()
{
    if (!m_nextView)
        return;
    m_nextView->page()->disconnect(this);
    m_pages->removeWidget(m_nextView);
    m_nextView->setPage(nullptr);
    delete m_nextView;
    m_nextView = nullptr;
}

BrowserFrame::~BrowserFrame()
{
    // The pages are owned by the window object; they must not outlive the views showing them
    // unnoticed.
    discardStagedPage();
    m_view->setPage(nullptr);
}

BrowserFrame* BrowserFrame::frameOfPage(QWebEnginePage* page)
{
    return qobject_cast<BrowserFrame*>(page->property(kFrameProperty).value<QObject*>());
}

void BrowserFrame::setTheaterMode(bool on)
{
    m_theater = on;
    m_navigationBar->setVisible(!barHidden());
    if (isVisible())
        showInMode();
}

bool BrowserFrame::barHidden() const
{
    return m_theater || m_blackedOut || m_place.mode == WindowPlace::Mode::FullScreen;
}

void BrowserFrame::setBlackedOut(bool on)
{
    if (on == m_blackedOut)
        return;
    m_blackedOut = on;
    if (on && !m_curtain) {
        m_curtain = new QWidget(this);
        m_curtain->setObjectName(QStringLiteral("BlackCurtain"));
        m_curtain->setAutoFillBackground(true);
        QPalette black = m_curtain->palette();
        black.setColor(QPalette::Window, Qt::black);
        m_curtain->setPalette(black);
    }
    if (m_curtain) {
        m_curtain->setGeometry(rect());
        m_curtain->setVisible(on);
        m_curtain->raise();
    }
    m_navigationBar->setVisible(!barHidden());
    if (isVisible())
        showInMode();
}

void BrowserFrame::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_curtain)
        m_curtain->setGeometry(rect());
}

void BrowserFrame::setPlace(const WindowPlace& place)
{
    if (place == m_place)
        return;
    m_place = place;
    m_navigationBar->setVisible(!barHidden());
    if (isVisible())
        showInMode();
}

void BrowserFrame::showOffScreen()
{
    // Shown as far as Qt and the engine know, so that the page is laid out at the window's size and
    // drawn; the desktop does not see the window yet.
    setAttribute(Qt::WA_DontShowOnScreen, true);
    if (m_place.mode == WindowPlace::Mode::FullScreen || m_place.mode == WindowPlace::Mode::Rect)
        setGeometry(m_place.rect);
    else if (m_theater && screen())
        setGeometry(screen()->geometry());
    show();
}

bool BrowserFrame::isOffScreen() const
{
    return testAttribute(Qt::WA_DontShowOnScreen);
}

void BrowserFrame::showInMode()
{
    if (m_place.mode == WindowPlace::Mode::Hidden) {
        // Its monitor is missing and it waits out of sight: still drawn, so that it comes back
        // with its page, but not on any monitor.
        if (!isOffScreen()) {
            hide();
            setAttribute(Qt::WA_DontShowOnScreen, true);
        }
        show();
        return;
    }
    if (isOffScreen()) {
        hide();
        setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    if (m_place.mode != WindowPlace::Mode::Free) {
        showInPlace();
        return;
    }
    if (m_theater || m_blackedOut)
        showFullScreen();
    else if (isFullScreen())
        showNormal();
    else
        show();
}

void BrowserFrame::showInPlace()
{
    QScreen* target = nullptr;
    for (QScreen* screen : QGuiApplication::screens())
        if (screen->name() == m_place.screen)
            target = screen;
    // Under Wayland the compositor puts a window full screen on the monitor it was shown on: one
    // on another monitor is shown there afresh.
    const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (target && screen() != target && isVisible() && (wayland || isFullScreen())) {
        if (wayland)
            hide();
        else
            showNormal();
    }
    if (target)
        setScreen(target);
    if (isFullScreen() && m_place.mode == WindowPlace::Mode::Rect)
        showNormal();
    setGeometry(m_place.rect);
    if (m_place.mode == WindowPlace::Mode::FullScreen)
        showFullScreen();
    else
        show();
}

void BrowserFrame::showMessage(const QString& text)
{
    m_message->setText(text);
    m_message->show();
}

void BrowserFrame::showDownload(QWebEngineDownloadRequest* download)
{
    const QString name = download->downloadFileName();
    showMessage(tr("Downloading %1 to %2 ...").arg(name, download->downloadDirectory()));
    connect(download, &QWebEngineDownloadRequest::isFinishedChanged, this, [this, download, name] {
        if (download->state() == QWebEngineDownloadRequest::DownloadCompleted)
            showMessage(tr("Downloaded %1 to %2.").arg(name, download->downloadDirectory()));
        else
            showMessage(tr("The download of %1 failed: %2").arg(name, download->interruptReasonString()));
    });
}

bool BrowserFrame::isShowingCrash() const
{
    return m_stack->currentIndex() == 1;
}

void BrowserFrame::showCrash(const QString& address)
{
    m_crashedAddress = address;
    m_crashText->setText(tr("The page %1 stopped working.").arg(address));
    m_stack->setCurrentIndex(1);
}

void BrowserFrame::reloadAfterCrash()
{
    m_stack->setCurrentIndex(0);
    m_page->load(QUrl(m_crashedAddress));
}

void BrowserFrame::updateNavigation()
{
    m_back->setEnabled(m_page->history()->canGoBack());
    m_forward->setEnabled(m_page->history()->canGoForward());
    m_reloadStop->setIcon(
        style()->standardIcon(m_loading ? QStyle::SP_BrowserStop : QStyle::SP_BrowserReload));
    m_reloadStop->setToolTip(m_loading ? tr("Stop") : tr("Reload"));
}

void BrowserFrame::closeEvent(QCloseEvent* event)
{
    event->accept();
    if (!m_closedOnce) {
        m_closedOnce = true;
        emit closed();
    }
}
