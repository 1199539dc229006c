#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

// Reports (prints the wall-clock time in ns since the epoch, then quits) once `window` has been
// painted for the first time and the event loop has nothing else waiting: the moment a user sees
// the window ready.
class IdleAfterPaint : public QObject
{
public:
    explicit IdleAfterPaint(QWidget* window) : QObject(window) { window->installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !m_painted) {
            m_painted = true;
            QTimer::singleShot(0, this, [] {
                const auto now = std::chrono::system_clock::now().time_since_epoch();
                std::printf("%lld\n",
                            (long long)std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
                std::fflush(stdout);
                QCoreApplication::quit();
            });
        }
        return false;
    }

private:
    bool m_painted = false;
};
