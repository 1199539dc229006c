#include "ScreenPlacer.h"

#include "browser/BrowserWindow.h"
#include "core/Globals.h"
#include "watch/EventLog.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

// The system tells of a monitor change in several steps (added, then moved, then made primary):
// they are put together before the windows move.
constexpr int kSettleMs = 150;

bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}

} // namespace

ScreenPlacer::ScreenPlacer(QObject* parent) : QObject(parent)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    connect(&m_settle, &QTimer::timeout, this, &ScreenPlacer::placeAll);
    if (auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        for (QScreen* screen : QGuiApplication::screens())
            watchScreen(screen);
        connect(app, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
            watchScreen(screen);
            monitorsChanged();
        });
        connect(app, &QGuiApplication::screenRemoved, this, &ScreenPlacer::monitorsChanged);
        connect(app, &QGuiApplication::primaryScreenChanged, this, &ScreenPlacer::monitorsChanged);
    }
}

QList<Monitor> ScreenPlacer::systemMonitors()
{
    QList<Monitor> monitors;
    const QScreen* primary = QGuiApplication::primaryScreen();
    for (const QScreen* screen : QGuiApplication::screens())
        monitors << Monitor{screen->name(), screen->manufacturer(), screen->model(), screen->serialNumber(),
                            screen->geometry(), screen == primary};
    return monitors;
}

void ScreenPlacer::watchScreen(QScreen* screen)
{
    connect(screen, &QScreen::geometryChanged, this, &ScreenPlacer::monitorsChanged);
}

void ScreenPlacer::monitorsChanged()
{
    m_settle.start();
}

void ScreenPlacer::setMonitorsForTest(const std::function<QList<Monitor>()>& monitors)
{
    m_testMonitors = monitors;
}

QList<Monitor> ScreenPlacer::monitors() const
{
    return m_testMonitors ? m_testMonitors() : systemMonitors();
}

void ScreenPlacer::setPlaces(const QList<SlotPlace>& places)
{
    m_places = places;
    placeAll();
}

void ScreenPlacer::attach(int slot, BrowserWindow* window)
{
    if (!isSlot(slot))
        return;
    m_windows[size_t(slot)] = window;
    m_placed[size_t(slot)] = WindowPlace();
    if (window)
        place(slot, monitors());
}

WindowPlace ScreenPlacer::placeOf(int slot) const
{
    for (const SlotPlace& place : m_places)
        if (place.slot == slot)
            return ScreenPlaces::resolve(place, monitors());
    return WindowPlace();
}

void ScreenPlacer::placeAll()
{
    m_settle.stop();
    const QList<Monitor> now = monitors();
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        place(slot, now);
    emit placed();
}

void ScreenPlacer::place(int slot, const QList<Monitor>& monitors)
{
    WindowPlace where;
    QString wanted;
    for (const SlotPlace& place : m_places)
        if (place.slot == slot) {
            where = ScreenPlaces::resolve(place, monitors);
            wanted = place.monitor.name;
        }
    BrowserWindow* window = m_windows[size_t(slot)];
    const WindowPlace before = m_placed[size_t(slot)];
    if (!window || (where == before && window->place() == where))
        return;
    m_placed[size_t(slot)] = where;
    window->setPlace(where);
    if (where.onItsOwnMonitor == before.onItsOwnMonitor)
        return;
    if (!where.onItsOwnMonitor)
        EventLog::write(QStringLiteral("monitor missing: window %1 %2 (%3 is not there)")
                            .arg(slot)
                            .arg(where.mode == WindowPlace::Mode::Hidden ? QStringLiteral("waits out of sight")
                                                                         : QStringLiteral("waits on %1").arg(where.screen),
                                 wanted));
    else if (where.mode != WindowPlace::Mode::Free)
        EventLog::write(QStringLiteral("monitor back: window %1 on %2").arg(slot).arg(where.screen));
}
