#include "ScreenPlaces.h"

#include <QStringList>

#include <algorithm>

QString Monitor::displayName() const
{
    const QString make = QStringList{manufacturer.trimmed(), model.trimmed()}.join(u' ').trimmed();
    if (make.isEmpty())
        return name;
    return name.isEmpty() ? make : QStringLiteral("%1 (%2)").arg(make, name);
}

namespace ScreenPlaces {

namespace {

bool sameMake(const MonitorId& id, const Monitor& monitor)
{
    return !(id.manufacturer.isEmpty() && id.model.isEmpty()) && id.manufacturer == monitor.manufacturer &&
           id.model == monitor.model;
}

// `rect` moved by `origin`, then kept inside `area` (made smaller where it does not fit).
QRect within(QRect rect, const QPoint& origin, const QRect& area)
{
    rect.translate(origin);
    rect.setWidth(std::min(rect.width(), area.width()));
    rect.setHeight(std::min(rect.height(), area.height()));
    rect.moveLeft(std::clamp(rect.left(), area.left(), area.right() - rect.width() + 1));
    rect.moveTop(std::clamp(rect.top(), area.top(), area.bottom() - rect.height() + 1));
    return rect;
}

} // namespace

std::optional<int> find(const MonitorId& id, const QList<Monitor>& monitors)
{
    if (id.isEmpty())
        return std::nullopt;
    // The same make and model, and not another unit of it (both serial numbers known and unlike).
    QList<int> alike;
    for (int i = 0; i < monitors.size(); ++i) {
        const Monitor& m = monitors[i];
        if (!sameMake(id, m))
            continue;
        if (!id.serial.isEmpty() && m.serial == id.serial)
            return i;
        if (id.serial.isEmpty() || m.serial.isEmpty())
            alike << i;
    }
    // Two of the same make and model: the connector tells them apart.
    for (int i : alike)
        if (monitors[i].name == id.name)
            return i;
    if (alike.size() == 1)
        return alike[0];
    // A monitor replaced by another on the same connector.
    for (int i = 0; i < monitors.size(); ++i)
        if (!id.name.isEmpty() && monitors[i].name == id.name)
            return i;
    return std::nullopt;
}

std::optional<int> primary(const QList<Monitor>& monitors)
{
    for (int i = 0; i < monitors.size(); ++i)
        if (monitors[i].primary)
            return i;
    return monitors.isEmpty() ? std::nullopt : std::optional<int>(0);
}

WindowPlace resolve(const SlotPlace& place, const QList<Monitor>& monitors)
{
    WindowPlace where;
    if (place.monitor.isEmpty())
        return where;
    std::optional<int> at = find(place.monitor, monitors);
    if (!at) {
        where.onItsOwnMonitor = false;
        if (place.missing == SlotPlace::Missing::StayHidden) {
            where.mode = WindowPlace::Mode::Hidden;
            return where;
        }
        at = primary(monitors);
        if (!at)
            return where;
    }
    const Monitor& monitor = monitors[*at];
    where.screen = monitor.name;
    const bool whole = place.fullScreen || !place.rect.isValid();
    where.mode = whole ? WindowPlace::Mode::FullScreen : WindowPlace::Mode::Rect;
    where.rect = whole ? monitor.geometry : within(place.rect, monitor.geometry.topLeft(), monitor.geometry);
    return where;
}

} // namespace ScreenPlaces
