#include "PageRecovery.h"

#include <algorithm>

void PageRecovery::loadStarted(const QString& url)
{
    if (url != m_failedUrl) {
        m_failedUrl.clear();
        m_failures = 0;
    }
    if (m_state != State::Retrying && m_state != State::CrashedReloading)
        m_state = State::Loading;
}

void PageRecovery::loadSucceeded()
{
    m_state = State::Shown;
    m_failures = 0;
    m_failedUrl.clear();
}

double PageRecovery::loadFailed(const QString& url, bool networkReason)
{
    if (url != m_failedUrl) {
        m_failedUrl = url;
        m_failures = 0;
    }
    ++m_failures;
    if (!networkReason || !m_policy.networkRetry) {
        m_state = State::Failed;
        return -1;
    }
    // 2, 4, 8 ... seconds, and never longer than five minutes between two tries.
    double delay = kFirstRetrySeconds;
    for (int i = 1; i < m_failures && delay < kLongestRetrySeconds; ++i)
        delay *= 2;
    m_retryDelay = std::min(delay, kLongestRetrySeconds);
    m_state = State::Retrying;
    return m_retryDelay;
}

double PageRecovery::crashed(double now)
{
    // Only the reloads of the last while count.
    m_reloads.erase(std::remove_if(m_reloads.begin(), m_reloads.end(),
                                   [&](double at) { return now - at >= m_policy.crashWindowSeconds || at > now; }),
                    m_reloads.end());
    if (m_reloads.size() >= m_policy.crashReloads) {
        m_state = State::GivenUp;
        return -1;
    }
    m_reloads.append(now);
    m_state = State::CrashedReloading;
    return m_policy.crashDelaySeconds;
}
