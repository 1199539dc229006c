#include "SchedulesFile.h"

#include "IniFileStatus.h"
#include "core/Globals.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace SchedulesFile {

namespace {

const QString kSchedules = QStringLiteral("Schedules");
const QString kDateFormat = QStringLiteral("yyyy-MM-dd");

QList<int> windowsOf(const QString& text)
{
    QList<int> windows;
    for (const QString& part : text.split(u',', Qt::SkipEmptyParts)) {
        bool ok = false;
        const int slot = part.trimmed().toInt(&ok);
        if (ok && slot >= 1 && slot <= kWindowSlots && !windows.contains(slot))
            windows << slot;
    }
    return windows;
}

} // namespace

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

QList<Schedule> read(const QString& path)
{
    QList<Schedule> schedules;
    if (!QFileInfo::exists(path))
        return schedules;
    QSettings file(path, QSettings::IniFormat);
    const int size = file.beginReadArray(kSchedules);
    for (int i = 0; i < size; ++i) {
        file.setArrayIndex(i);
        Schedule schedule;
        schedule.name = file.value(QStringLiteral("name")).toString().trimmed();
        schedule.list = file.value(QStringLiteral("list")).toString().trimmed();
        if (schedule.list.isEmpty())
            continue;
        if (schedule.name.isEmpty())
            schedule.name = schedule.list;
        schedule.intervalSeconds = std::clamp(file.value(QStringLiteral("interval"), 120).toInt(), 1, 24 * 3600);
        schedule.loop = file.value(QStringLiteral("loop"), true).toBool();
        schedule.severalWindows = file.value(QStringLiteral("severalWindows"), false).toBool();
        schedule.keepPagesLoaded = file.value(QStringLiteral("keepPagesLoaded"), false).toBool();
        schedule.enabled = file.value(QStringLiteral("enabled"), true).toBool();
        schedule.windows = windowsOf(file.value(QStringLiteral("windows")).toStringList().join(u','));
        schedule.start = file.value(QStringLiteral("start")).toString() == u"where-it-stopped-today"
                             ? Schedule::Start::WhereItStoppedToday
                             : Schedule::Start::AtFirstPage;
        // A rule's days may hold commas, which an INI file written by hand splits into a list.
        const QString rules = file.value(QStringLiteral("rules")).toStringList().join(u',');
        for (const QString& text : rules.split(u'|', Qt::SkipEmptyParts))
            if (const std::optional<ScheduleRule> rule = ScheduleRule::fromText(text))
                schedule.rules << *rule;
        for (const QString& text : file.value(QStringLiteral("leaveOut")).toStringList().join(u',').split(u',', Qt::SkipEmptyParts)) {
            const QDate date = QDate::fromString(text.trimmed(), kDateFormat);
            if (date.isValid() && !schedule.leftOut.contains(date))
                schedule.leftOut << date;
        }
        schedules << schedule;
    }
    file.endArray();
    return schedules;
}

RunError write(const QString& path, const QList<Schedule>& schedules)
{
    QSettings file(path, QSettings::IniFormat);
    file.clear();
    file.beginWriteArray(kSchedules);
    for (int i = 0; i < schedules.size(); ++i) {
        const Schedule& schedule = schedules[i];
        file.setArrayIndex(i);
        file.setValue(QStringLiteral("name"), schedule.name);
        file.setValue(QStringLiteral("list"), schedule.list);
        file.setValue(QStringLiteral("interval"), schedule.intervalSeconds);
        file.setValue(QStringLiteral("loop"), schedule.loop);
        file.setValue(QStringLiteral("severalWindows"), schedule.severalWindows);
        file.setValue(QStringLiteral("keepPagesLoaded"), schedule.keepPagesLoaded);
        file.setValue(QStringLiteral("enabled"), schedule.enabled);
        QStringList windows;
        for (int slot : schedule.windows)
            windows << QString::number(slot);
        file.setValue(QStringLiteral("windows"), windows.join(u','));
        file.setValue(QStringLiteral("start"), schedule.start == Schedule::Start::WhereItStoppedToday
                                                   ? QStringLiteral("where-it-stopped-today")
                                                   : QStringLiteral("first-page"));
        QStringList rules;
        for (const ScheduleRule& rule : schedule.rules)
            rules << rule.toText();
        file.setValue(QStringLiteral("rules"), rules.join(QStringLiteral(" | ")));
        QStringList dates;
        for (const QDate& date : schedule.leftOut)
            dates << date.toString(kDateFormat);
        file.setValue(QStringLiteral("leaveOut"), dates.join(u','));
    }
    file.endArray();
    file.sync(); // written to a temporary file and renamed over the old one
    return iniWriteError(file, path);
}

} // namespace SchedulesFile
