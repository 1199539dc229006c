#pragma once

#include <QStringList>

#include <functional>

// The timed run of a favourite list: the pages' addresses, the position of the next one and the
// clock reading at which the current wait began. Timer1 calls tick() every 600 ms; a page opens
// at the first tick, then whenever more than RunInterval seconds have passed since the tick that
// followed the previous page.
class ListRun
{
public:
    // Opens CurrentUrl through NewBtnAction with the run's several-windows flag, marking the call
    // as the run's own (RunNavigating).
    std::function<void(bool multi)> openPage;
    // Shows "    List Run Complete".
    std::function<void()> showComplete;
    // Brings the run dialog forward when it is open.
    std::function<void()> focusDialog;

    void setPages(const QStringList& urls) { m_urls = urls; }
    const QStringList& pages() const { return m_urls; }
    int RunCount() const { return int(m_urls.size()); }
    int RunPos = 0;
    double RunStart = 0; // seconds since midnight; 0 = not started

    // One tick of Timer1's run part.
    void tick();
    // Back to the first page (a looping run, or the eight-window cycle asking for it).
    void restart();
    // Stops the run: Idle again.
    void stop();

private:
    QStringList m_urls;
};
