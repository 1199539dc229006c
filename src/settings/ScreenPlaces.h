#pragma once

#include <QList>
#include <QRect>
#include <QString>

#include <optional>

// A monitor as the system tells of it: its connector name ("HDMI-1"), and where the system reports
// them, its make, model and serial number; where it stands on the desktop, and whether it is the
// primary one.
struct Monitor
{
    QString name;
    QString manufacturer;
    QString model;
    QString serial;
    QRect geometry;
    bool primary = false;

    // As a person knows it from the desktop's display settings: "Dell U2720Q (HDMI-1)", or the
    // connector alone where the system tells no make or model.
    QString displayName() const;
};

// The monitor a window is fixed to, as it was when a person chose it.
struct MonitorId
{
    QString name;
    QString manufacturer;
    QString model;
    QString serial;

    static MonitorId of(const Monitor& monitor) { return {monitor.name, monitor.manufacturer, monitor.model, monitor.serial}; }
    bool isEmpty() const { return name.isEmpty() && manufacturer.isEmpty() && model.isEmpty() && serial.isEmpty(); }
    bool operator==(const MonitorId&) const = default;
};

// What a browsing slot's window shows while no schedule runs in it: the desktop as it is (the
// rotation's last page, the screen saver and power saving free to take over), nothing (a black
// window over its monitor), or a page of the person's choice.
struct SlotIdle
{
    enum class Show { Desktop, Black, Page };

    Show show = Show::Desktop;
    QString page;

    bool operator==(const SlotIdle&) const = default;
};

// Where one browsing slot's window stands: on a monitor, full screen or at a rectangle of it (in
// the monitor's own coordinates, so that it follows the monitor wherever the desktop puts it), and
// what it does while that monitor is missing.
struct SlotPlace
{
    enum class Missing { WaitOnPrimary, StayHidden };

    int slot = 0;
    MonitorId monitor;
    bool fullScreen = true;
    QRect rect;
    Missing missing = Missing::WaitOnPrimary;
    SlotIdle idle;

    bool operator==(const SlotPlace&) const = default;
};

// Where a window is put now: left where the desktop puts it, full screen on a monitor, at a
// rectangle of the desktop, or kept out of sight (its monitor is missing and it waits hidden).
struct WindowPlace
{
    enum class Mode { Free, FullScreen, Rect, Hidden };

    Mode mode = Mode::Free;
    QString screen; // the connector name of the monitor it stands on
    QRect rect;     // in desktop coordinates: the whole monitor when full screen
    bool onItsOwnMonitor = true; // false while it waits on the primary monitor

    bool operator==(const WindowPlace&) const = default;
};

namespace ScreenPlaces {

// The monitor of `monitors` that is `id`: the same make, model and serial number wherever it is
// plugged in; else the only one of that make and model; else the one on the same connector (a
// monitor replaced by another). None when it is missing.
std::optional<int> find(const MonitorId& id, const QList<Monitor>& monitors);

// Where the window of `place` goes among `monitors` now.
WindowPlace resolve(const SlotPlace& place, const QList<Monitor>& monitors);

// The primary monitor of `monitors` (the first where none says so); none when there is none.
std::optional<int> primary(const QList<Monitor>& monitors);

} // namespace ScreenPlaces
