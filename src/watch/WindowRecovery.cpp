#include "WindowRecovery.h"

#include "EventLog.h"
#include "settings/VantrelConf.h"
#include "browser/BrowserWindow.h"
#include "core/Clock.h"

#include <QNetworkInformation>

#include <cmath>

namespace {
QString window(int slot)
{
    return QStringLiteral("window %1").arg(slot);
}

} // namespace

WindowRecovery::WindowRecovery(QObject* parent) : QObject(parent)
{
    // Where the system tells when the network comes back, waiting pages do not wait any longer.
    if (QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)) {
        connect(QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, this,
                [this](QNetworkInformation::Reachability reachability) {
                    if (reachability == QNetworkInformation::Reachability::Online)
                        networkBack();
                });
    }
}

void WindowRecovery::applyPolicy(Slot& s)
{
    PageRecovery::Policy policy;
    policy.crashReloads = VantrelConf::value(VantrelConf::kCrashReloads);
    policy.crashWindowSeconds = 60.0 * VantrelConf::value(VantrelConf::kCrashWindowMinutes);
    policy.crashDelaySeconds = VantrelConf::value(VantrelConf::kCrashDelaySeconds);
    policy.networkRetry = VantrelConf::flag(VantrelConf::kNetworkRetry);
    s.recovery.setPolicy(policy);
}

void WindowRecovery::watch(int slot, BrowserWindow* browser)
{
    if (!isSlot(slot) || !browser)
        return;
    Slot& s = m_slots[size_t(slot)];
    s = Slot{};
    s.window = browser;
    connect(browser, &BrowserWindow::loadBegan, this, [this, slot](const QString& url) { loadBegan(slot, url); });
    connect(browser, &BrowserWindow::loadSucceeded, this, [this, slot] { loadSucceeded(slot); });
    connect(browser, &BrowserWindow::loadFailed, this,
            [this, slot](const QString& url, const QString& reason, bool network) {
                loadFailed(slot, url, reason, network);
            });
    connect(browser, &BrowserWindow::pageCrashed, this,
            [this, slot](const QString& url) { pageCrashed(slot, url); });
}

void WindowRecovery::sentTo(int slot, const QString& url)
{
    if (!isSlot(slot))
        return;
    EventLog::write(QStringLiteral("page opened: %1 %2").arg(window(slot), url));
    Slot& s = m_slots[size_t(slot)];
    s.url = url;
    s.due = QDateTime(); // sent elsewhere: what waited is forgotten
}

void WindowRecovery::forget(int slot)
{
    if (!isSlot(slot))
        return;
    Slot& s = m_slots[size_t(slot)];
    if (s.window)
        s.window->disconnect(this);
    s = Slot{};
    show(slot, PageRecovery::State::Idle, QString());
}

void WindowRecovery::loadBegan(int slot, const QString& url)
{
    Slot& s = m_slots[size_t(slot)];
    const PageRecovery::State before = s.recovery.state();
    s.recovery.loadStarted(url);
    s.loadingSince = Clock::localNow();
    s.loading = url;
    if (url != s.recovery.failedUrl())
        s.due = QDateTime(); // the window went elsewhere: no retry of the old address
    if (s.recovery.state() == PageRecovery::State::Loading && before != PageRecovery::State::Loading)
        show(slot, PageRecovery::State::Loading, tr("Loading %1").arg(url));
}

void WindowRecovery::loadSucceeded(int slot)
{
    Slot& s = m_slots[size_t(slot)];
    s.recovery.loadSucceeded();
    s.due = QDateTime();
    s.loadingSince = QDateTime();
    s.shownSince = Clock::localNow();
    show(slot, PageRecovery::State::Shown, tr("Shown"));
}

void WindowRecovery::loadFailed(int slot, const QString& url, const QString& reason, bool network)
{
    Slot& s = m_slots[size_t(slot)];
    // A page whose process ended while it was still loading fails to load too: that failure is
    // the crash's own, and the reload after the crash stands.
    if (s.recovery.state() == PageRecovery::State::CrashedReloading && s.due.isValid() && url == s.url)
        return;
    s.loadingSince = QDateTime();
    applyPolicy(s);
    EventLog::write(QStringLiteral("load failed: %1 %2 (%3)").arg(window(slot), url, reason));
    const double delay = s.recovery.loadFailed(url, network);
    if (delay < 0) {
        s.due = QDateTime();
        show(slot, PageRecovery::State::Failed, tr("Could not be loaded: %1").arg(reason));
        return;
    }
    s.due = Clock::localNow().addMSecs(qint64(delay * 1000));
    show(slot, PageRecovery::State::Retrying,
                   tr("Failed (%1), trying again in %2 s").arg(reason).arg(std::lround(delay)));
}

void WindowRecovery::pageCrashed(int slot, const QString& url)
{
    Slot& s = m_slots[size_t(slot)];
    applyPolicy(s);
    EventLog::write(QStringLiteral("crash: %1 %2").arg(window(slot), url));
    s.url = url;
    s.loadingSince = QDateTime();
    const double delay = s.recovery.crashed(Clock::epochSeconds());
    if (delay < 0) {
        s.due = QDateTime();
        EventLog::write(QStringLiteral("given up: %1 %2").arg(window(slot), url));
        show(slot, PageRecovery::State::GivenUp,
                       tr("Crashed too often: it waits for its Reload button"));
        return;
    }
    s.due = Clock::localNow().addMSecs(qint64(delay * 1000));
    show(slot, PageRecovery::State::CrashedReloading,
                   tr("Crashed, loading again in %1 s").arg(std::lround(delay)));
}

void WindowRecovery::networkBack()
{
    const QDateTime now = Clock::localNow();
    for (int slot = 1; slot <= 8; ++slot)
        if (m_slots[size_t(slot)].recovery.networkBack() && m_slots[size_t(slot)].due.isValid())
            m_slots[size_t(slot)].due = now;
}

void WindowRecovery::wokeUp()
{
    const QDateTime now = Clock::localNow();
    const qint64 olderThan = 60LL * VantrelConf::value(VantrelConf::kReloadAfterSleepMinutes);
    for (int slot = 1; slot <= 8; ++slot) {
        Slot& s = m_slots[size_t(slot)];
        if (!s.window || !s.shownSince.isValid() || s.shownSince.secsTo(now) < olderThan ||
            s.recovery.state() != PageRecovery::State::Shown)
            continue;
        s.shownSince = QDateTime();
        EventLog::write(QStringLiteral("reload after sleep: %1 %2").arg(window(slot), s.loading));
        show(slot, PageRecovery::State::Loading, tr("Loading %1").arg(s.loading));
        s.window->retry();
    }
}

void WindowRecovery::checkMemory(const QDateTime& now)
{
    // Reading eight small status files costs a few microseconds; every two seconds is plenty.
    if (m_memoryChecked.isValid() && m_memoryChecked <= now && m_memoryChecked.secsTo(now) < kMemoryCheckSeconds)
        return;
    m_memoryChecked = now;
    const qint64 limit = qint64(VantrelConf::value(VantrelConf::kPageMemoryLimitMB)) * 1024 * 1024;
    for (int slot = 1; slot <= 8; ++slot) {
        Slot& s = m_slots[size_t(slot)];
        if (!s.window)
            continue;
        const qint64 bytes = limit > 0 ? ProcessMemory::residentBytes(s.window->pageProcessId()) : 0;
        const bool hidden = !s.window->isVisible();
        const PageMemoryGuard::Verdict verdict = s.memory.look(bytes, limit, hidden, now);
        if (verdict == PageMemoryGuard::Verdict::Fine || verdict == PageMemoryGuard::Verdict::StillOver)
            continue;
        const QString sizes = QStringLiteral("%1 MB, the limit is %2 MB").arg(bytes >> 20).arg(limit >> 20);
        if (verdict == PageMemoryGuard::Verdict::OverLimit) {
            EventLog::write(QStringLiteral("page too big: %1 %2 (%3)").arg(window(slot), s.url, sizes));
            continue;
        }
        EventLog::write(QStringLiteral("reload, too big: %1 %2 (%3%4)")
                            .arg(window(slot), s.url, sizes, hidden ? QStringLiteral(", while hidden") : QString()));
        show(slot, PageRecovery::State::Loading, tr("Loading %1 again: its page took more than %2 MB").arg(s.url).arg(limit >> 20));
        s.window->retry();
    }
}

void WindowRecovery::tick()
{
    const QDateTime now = Clock::localNow();
    checkMemory(now);
    const int timeout = VantrelConf::value(VantrelConf::kLoadTimeoutSeconds);
    for (int slot = 1; slot <= 8; ++slot) {
        Slot& s = m_slots[size_t(slot)];
        if (timeout > 0 && s.loadingSince.isValid() && s.window && s.loadingSince.secsTo(now) >= timeout &&
            s.recovery.state() == PageRecovery::State::Loading) {
            // A page that stopped coming: stopped, and tried again as when the network failed.
            s.loadingSince = QDateTime();
            EventLog::write(QStringLiteral("load stopped: %1 %2 (still loading after %3 s)")
                                .arg(window(slot), s.loading)
                                .arg(timeout));
            s.window->stopLoading();
            loadFailed(slot, s.loading, tr("still loading after %1 s").arg(timeout), true);
            continue;
        }
        if (!s.due.isValid() || now < s.due || !s.window)
            continue;
        s.due = QDateTime();
        const bool crashed = s.recovery.state() == PageRecovery::State::CrashedReloading;
        const QString url = crashed ? s.url : s.recovery.failedUrl();
        EventLog::write(QStringLiteral("%1: %2 %3").arg(crashed ? QStringLiteral("automatic reload") : QStringLiteral("retry"),
                                                        window(slot), url));
        show(slot, PageRecovery::State::Loading, tr("Loading %1").arg(url));
        s.window->retry();
    }
}

void WindowRecovery::show(int slot, PageRecovery::State state, const QString& toolTip)
{
    m_shown[size_t(slot)] = {state, toolTip};
    emit stateShown(slot, state, toolTip);
}
