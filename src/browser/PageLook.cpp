#include "PageLook.h"

#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>

namespace PageLook {

namespace {
constexpr double kMinFactor = 0.25; // the engine's own bounds
constexpr double kMaxFactor = 5.0;
} // namespace

double fixedZoom(const PageSettings& look)
{
    return look.zoom > 0 ? std::clamp(look.zoom / 100.0, kMinFactor, kMaxFactor) : 0.0;
}

QString contentProbe()
{
    return QStringLiteral("performance.getEntriesByName('first-contentful-paint').length > 0");
}

QString widthProbe()
{
    return QStringLiteral("[Math.max(document.documentElement.scrollWidth, document.body ? "
                          "document.body.scrollWidth : 0), window.innerWidth]");
}

double fitZoom(double pageWidth, double viewWidth, double current)
{
    if (!(pageWidth > 0) || !(viewWidth > 0) || !(current > 0))
        return 1.0;
    return std::clamp(current * viewWidth / pageWidth, kMinFactor, kMaxFactor);
}

QString scrollScript(const PageSettings& look, double seconds)
{
    // One scroll at a time: a new one (the page shown again) ends the one before.
    static const QString kCommon = QStringLiteral(
        "(function (mode, target, ms) {"
        "  var me = window.__vantrelScroll = {stopped: false};"
        "  var stop = function () { me.stopped = true; };"
        "  ['mousedown', 'keydown', 'wheel', 'touchstart'].forEach(function (t) {"
        "    window.addEventListener(t, stop, {capture: true, once: true, passive: true}); });"
        "  var root = document.scrollingElement || document.documentElement;"
        "  if (mode === 'target') {"
        "    var el = null;"
        "    try { el = document.getElementById(target.replace(/^#/, '')) || document.querySelector(target); }"
        "    catch (e) { el = null; }"
        "    if (el) el.scrollIntoView({block: 'start', behavior: 'smooth'});"
        "    return !!el;"
        "  }"
        "  root.scrollTop = 0;"
        "  var start = null;"
        "  var step = function (now) {"
        "    if (me.stopped || window.__vantrelScroll !== me) return;"
        "    if (start === null) start = now;"
        "    var bottom = Math.max(0, root.scrollHeight - window.innerHeight);"
        "    var f = Math.min(1, (now - start) / ms);"
        "    root.scrollTop = bottom * f;"
        "    if (f < 1) window.requestAnimationFrame(step);"
        "  };"
        "  window.requestAnimationFrame(step);"
        "  return true;"
        "})(%1, %2, %3)");
    const auto quoted = [](const QString& text) {
        return QString::fromUtf8(QJsonDocument::fromVariant(QVariantList{text}).toJson(QJsonDocument::Compact))
            .mid(1)
            .chopped(1);
    };
    switch (look.scroll) {
    case PageSettings::Scroll::None:
        return QString();
    case PageSettings::Scroll::Slowly:
        return kCommon.arg(quoted(QStringLiteral("slowly")), quoted(QString()),
                           QString::number(std::max(1000.0, seconds * 1000.0), 'f', 0));
    case PageSettings::Scroll::ToTarget:
        // One pass over the script, so that a target holding "%1" stays as written.
        return kCommon.arg(quoted(QStringLiteral("target")), quoted(look.scrollTarget), QStringLiteral("0"));
    }
    return QString();
}

} // namespace PageLook
