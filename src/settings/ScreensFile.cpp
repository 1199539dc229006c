#include "ScreensFile.h"

#include "IniFileStatus.h"
#include "core/Globals.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace ScreensFile {

namespace {

const QString kFullScreen = QStringLiteral("full-screen");
const QString kHidden = QStringLiteral("hidden");
const QString kPrimary = QStringLiteral("primary");
const QString kBlack = QStringLiteral("black");
const QString kPage = QStringLiteral("page");

QString group(int slot)
{
    return QStringLiteral("Window%1").arg(slot);
}

// "x y width height", the size at least 1x1; none when it is not four whole numbers.
std::optional<QRect> rectOf(const QString& text)
{
    const QStringList parts = text.simplified().split(u' ');
    if (parts.size() != 4)
        return std::nullopt;
    int v[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        v[i] = parts[i].toInt(&ok);
        if (!ok || std::abs(v[i]) > 100000)
            return std::nullopt;
    }
    if (v[2] < 1 || v[3] < 1)
        return std::nullopt;
    return QRect(v[0], v[1], v[2], v[3]);
}

} // namespace

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

QList<SlotPlace> read(const QString& path)
{
    QList<SlotPlace> places;
    if (!QFileInfo::exists(path))
        return places;
    QSettings file(path, QSettings::IniFormat);
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        file.beginGroup(group(slot));
        SlotPlace place;
        place.slot = slot;
        // A comma in a make or model reads back as a list from a file written by hand.
        const auto text = [&file](const char* key) {
            return file.value(QString::fromLatin1(key)).toStringList().join(u',').trimmed();
        };
        place.monitor = {text("monitor"), text("manufacturer"), text("model"), text("serial")};
        const QString where = text("place");
        place.fullScreen = where.isEmpty() || where == kFullScreen;
        if (!place.fullScreen) {
            const std::optional<QRect> rect = rectOf(where);
            if (rect)
                place.rect = *rect;
            else
                place.monitor = {};
        }
        place.missing = text("ifMissing") == kHidden ? SlotPlace::Missing::StayHidden : SlotPlace::Missing::WaitOnPrimary;
        const QString idle = text("whenIdle");
        place.idle.page = text("idlePage");
        place.idle.show = idle == kBlack                             ? SlotIdle::Show::Black
                          : idle == kPage && !place.idle.page.isEmpty() ? SlotIdle::Show::Page
                                                                       : SlotIdle::Show::Desktop;
        if (place.idle.show != SlotIdle::Show::Page)
            place.idle.page.clear();
        file.endGroup();
        if (!place.monitor.isEmpty() || place.idle.show != SlotIdle::Show::Desktop)
            places << place;
    }
    return places;
}

RunError write(const QString& path, const QList<SlotPlace>& places)
{
    QSettings file(path, QSettings::IniFormat);
    file.clear();
    QList<SlotPlace> sorted = places;
    std::sort(sorted.begin(), sorted.end(), [](const SlotPlace& a, const SlotPlace& b) { return a.slot < b.slot; });
    for (const SlotPlace& place : sorted) {
        if (place.slot < 1 || place.slot > kWindowSlots || (place.monitor.isEmpty() && place.idle.show == SlotIdle::Show::Desktop))
            continue;
        file.beginGroup(group(place.slot));
        file.setValue(QStringLiteral("monitor"), place.monitor.name);
        file.setValue(QStringLiteral("manufacturer"), place.monitor.manufacturer);
        file.setValue(QStringLiteral("model"), place.monitor.model);
        file.setValue(QStringLiteral("serial"), place.monitor.serial);
        const QRect& r = place.rect;
        file.setValue(QStringLiteral("place"), place.fullScreen || !r.isValid()
                                                   ? kFullScreen
                                                   : QStringLiteral("%1 %2 %3 %4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height()));
        file.setValue(QStringLiteral("ifMissing"), place.missing == SlotPlace::Missing::StayHidden ? kHidden : kPrimary);
        file.setValue(QStringLiteral("whenIdle"), place.idle.show == SlotIdle::Show::Black  ? kBlack
                                                  : place.idle.show == SlotIdle::Show::Page ? kPage
                                                                                            : QStringLiteral("desktop"));
        if (place.idle.show == SlotIdle::Show::Page)
            file.setValue(QStringLiteral("idlePage"), place.idle.page);
        file.endGroup();
    }
    file.sync(); // written to a temporary file and renamed over the old one
    return iniWriteError(file, path);
}

} // namespace ScreensFile
