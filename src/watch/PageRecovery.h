#pragma once

#include <QList>
#include <QString>

// What one browser window's page goes through, and when it is tried again: a page whose process
// ended abnormally is loaded again after a short wait, a few times within a while at most, then
// left with its Reload button; a page that could not be reached for a network reason is tried
// again after 2, 4, 8 ... seconds, at most every 5 minutes, until it loads or the window is sent
// elsewhere. Times are seconds on any steady clock.
class PageRecovery
{
public:
    enum class State { Idle, Loading, Shown, Retrying, CrashedReloading, GivenUp, Failed };

    struct Policy
    {
        int crashReloads = 3;             // automatic reloads allowed ...
        double crashWindowSeconds = 600;  // ... within this time
        double crashDelaySeconds = 2;
        bool networkRetry = true;
    };
    static constexpr double kFirstRetrySeconds = 2;
    static constexpr double kLongestRetrySeconds = 300;

    void setPolicy(const Policy& policy) { m_policy = policy; }

    // A load of `url` began. A new address forgets the failures of the old one.
    void loadStarted(const QString& url);
    void loadSucceeded();
    // The load of `url` failed; the seconds until it is tried again, or -1 for no retry.
    double loadFailed(const QString& url, bool networkReason);
    // The page's process ended abnormally at `now`; the seconds until the page is loaded again, or
    // -1 when the window has had its reloads and gives up.
    double crashed(double now);
    // The network came back: true when a retry is waiting, which is then due at once.
    bool networkBack() const { return m_state == State::Retrying; }

    State state() const { return m_state; }
    int failures() const { return m_failures; }
    double retryDelay() const { return m_retryDelay; }
    QString failedUrl() const { return m_failedUrl; }

private:
    Policy m_policy;
    State m_state = State::Idle;
    QString m_failedUrl;
    int m_failures = 0;
    double m_retryDelay = 0;
    QList<double> m_reloads; // when automatic reloads after crashes happened
};
