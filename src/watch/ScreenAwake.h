#pragma once

#include <QString>

// Holds the desktop's screen saver and screen blanking off, through the freedesktop
// org.freedesktop.ScreenSaver service on the session bus (Inhibit / UnInhibit), where the desktop
// offers it.
class ScreenAwake
{
public:
    ScreenAwake() = default;
    ~ScreenAwake();
    ScreenAwake(const ScreenAwake&) = delete;
    ScreenAwake& operator=(const ScreenAwake&) = delete;

    // Holds the screen awake; false, with the reason in `why`, when the desktop offers no way.
    bool hold(const QString& reason, QString* why);
    void release();
    bool held() const { return m_held; }

private:
    bool m_held = false;
    uint m_cookie = 0;
    QString m_path;
};
