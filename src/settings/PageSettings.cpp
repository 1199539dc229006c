#include "PageSettings.h"

#include <QStringList>

#include <algorithm>
#include <optional>

namespace {

const QString kSeconds = QStringLiteral("seconds");
const QString kZoom = QStringLiteral("zoom");
const QString kReload = QStringLiteral("reload");
const QString kScroll = QStringLiteral("scroll");
const QString kScrollTo = QStringLiteral("scrollto");
const QString kSkip = QStringLiteral("skip");

// A whole number written plainly, or nothing.
std::optional<int> number(const QString& text)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    return ok ? std::optional<int>(n) : std::nullopt;
}

QString duration(int seconds)
{
    if (seconds % 3600 == 0)
        return QStringLiteral("%1 h").arg(seconds / 3600);
    if (seconds % 60 == 0)
        return QStringLiteral("%1 min").arg(seconds / 60);
    return QStringLiteral("%1 s").arg(seconds);
}

} // namespace

PageSettings PageSettings::bounded() const
{
    PageSettings s = *this;
    if (s.seconds != 0)
        s.seconds = std::clamp(s.seconds, kMinSeconds, kMaxSeconds);
    if (s.zoom != 0 && s.zoom != kFitWidth)
        s.zoom = std::clamp(s.zoom, kMinZoom, kMaxZoom);
    if (s.reload == Reload::EveryMinutes)
        s.reloadMinutes = std::clamp(s.reloadMinutes, 1, kMaxReloadMinutes);
    else
        s.reloadMinutes = 0;
    s.scrollTarget = s.scrollTarget.trimmed().left(kMaxTargetLength);
    if (s.scroll == Scroll::ToTarget && s.scrollTarget.isEmpty())
        s.scroll = Scroll::None;
    if (s.scroll != Scroll::ToTarget)
        s.scrollTarget.clear();
    return s;
}

QString PageSettings::summary() const
{
    QStringList parts;
    if (skip)
        parts << QStringLiteral("skipped for now");
    if (seconds > 0)
        parts << QStringLiteral("shown %1").arg(duration(seconds));
    if (zoom == kFitWidth)
        parts << QStringLiteral("zoomed to fit the width");
    else if (zoom > 0)
        parts << QStringLiteral("zoom %1 %").arg(zoom);
    switch (reload) {
    case Reload::AsTheRun:
        break;
    case Reload::EveryMinutes:
        parts << QStringLiteral("reloaded every %1").arg(duration(reloadMinutes * 60));
        break;
    case Reload::EachShow:
        parts << QStringLiteral("reloaded each time it is shown");
        break;
    case Reload::Never:
        parts << QStringLiteral("never reloaded");
        break;
    }
    if (scroll == Scroll::Slowly)
        parts << QStringLiteral("scrolls down slowly");
    else if (scroll == Scroll::ToTarget)
        parts << QStringLiteral("scrolls to %1").arg(scrollTarget);
    return parts.join(QStringLiteral(", "));
}

QList<QPair<QString, QString>> PageSettings::values() const
{
    QList<QPair<QString, QString>> v;
    if (seconds > 0)
        v.append({kSeconds, QString::number(seconds)});
    if (zoom == kFitWidth)
        v.append({kZoom, QStringLiteral("fit")});
    else if (zoom > 0)
        v.append({kZoom, QString::number(zoom)});
    if (reload == Reload::EveryMinutes)
        v.append({kReload, QString::number(reloadMinutes)});
    else if (reload == Reload::EachShow)
        v.append({kReload, QStringLiteral("each")});
    else if (reload == Reload::Never)
        v.append({kReload, QStringLiteral("never")});
    if (scroll == Scroll::Slowly)
        v.append({kScroll, QStringLiteral("slowly")});
    else if (scroll == Scroll::ToTarget)
        v.append({kScrollTo, scrollTarget});
    if (skip)
        v.append({kSkip, QStringLiteral("1")});
    return v;
}

PageSettings PageSettings::fromValues(const QList<QPair<QString, QString>>& values)
{
    PageSettings s;
    for (const auto& [rawName, value] : values) {
        const QString name = rawName.toLower();
        if (name == kSeconds) {
            if (const auto n = number(value); n && *n > 0)
                s.seconds = *n;
        } else if (name == kZoom) {
            if (value.trimmed().toLower() == u"fit")
                s.zoom = kFitWidth;
            else if (const auto n = number(value); n && *n > 0)
                s.zoom = *n;
        } else if (name == kReload) {
            const QString rule = value.trimmed().toLower();
            if (rule == u"each") {
                s.reload = Reload::EachShow;
            } else if (rule == u"never") {
                s.reload = Reload::Never;
            } else if (const auto n = number(rule); n && *n > 0) {
                s.reload = Reload::EveryMinutes;
                s.reloadMinutes = *n;
            }
        } else if (name == kScroll) {
            if (value.trimmed().toLower() == u"slowly")
                s.scroll = Scroll::Slowly;
        } else if (name == kScrollTo) {
            s.scroll = Scroll::ToTarget;
            s.scrollTarget = value;
        } else if (name == kSkip) {
            const QString flag = value.trimmed().toLower();
            s.skip = flag == u"1" || flag == u"true" || flag == u"yes";
        }
    }
    return s.bounded();
}
