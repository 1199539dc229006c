#include "Schedule.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

const char* const kDayNames[7] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
constexpr quint8 kEveryDay = 0x7F;
constexpr quint8 kWeekdays = 0x1F;
constexpr quint8 kWeekend = 0x60;

// 1..7 for a day's name or its start of three letters or more ("Mon", "Tues", "Wednesday"), any
// case; 0 for anything else.
int dayNumber(const QString& name)
{
    static const char* const full[7] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
    const QString trimmed = name.trimmed();
    if (trimmed.size() < 3)
        return 0;
    for (int day = 0; day < 7; ++day)
        if (QLatin1String(full[day]).startsWith(trimmed, Qt::CaseInsensitive))
            return day + 1;
    return 0;
}

// "08:00", "8:00" or "24:00" (the end of the day, kept as midnight).
std::optional<QTime> timeOf(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,2}):(\\d{2})$"));
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const int hour = match.captured(1).toInt();
    const int minute = match.captured(2).toInt();
    if (hour == 24 && minute == 0)
        return QTime(0, 0);
    if (hour > 23 || minute > 59)
        return std::nullopt;
    return QTime(hour, minute);
}

// The days of `text` ("Mon-Fri,Sun", "Daily", "Weekdays", "Weekends"), 0 when any part is no day.
quint8 daysOf(const QString& text)
{
    quint8 days = 0;
    for (const QString& part : text.split(u',', Qt::SkipEmptyParts)) {
        const QString item = part.trimmed();
        if (item.compare(QLatin1String("Daily"), Qt::CaseInsensitive) == 0) {
            days |= kEveryDay;
        } else if (item.compare(QLatin1String("Weekdays"), Qt::CaseInsensitive) == 0) {
            days |= kWeekdays;
        } else if (item.compare(QLatin1String("Weekends"), Qt::CaseInsensitive) == 0) {
            days |= kWeekend;
        } else if (item.contains(u'-')) {
            const int first = dayNumber(item.section(u'-', 0, 0));
            const int last = dayNumber(item.section(u'-', 1));
            if (first == 0 || last == 0)
                return 0;
            // A range may go round the end of the week: Fri-Mon.
            for (int day = first;; day = day % 7 + 1) {
                days |= quint8(1 << (day - 1));
                if (day == last)
                    break;
            }
        } else {
            const int day = dayNumber(item);
            if (day == 0)
                return 0;
            days |= quint8(1 << (day - 1));
        }
    }
    return days;
}

QString daysText(quint8 days)
{
    if (days == kEveryDay)
        return QStringLiteral("Daily");
    QStringList parts;
    for (int day = 0; day < 7;) {
        if (!((days >> day) & 1)) {
            ++day;
            continue;
        }
        int last = day;
        while (last + 1 < 7 && ((days >> (last + 1)) & 1))
            ++last;
        if (last - day >= 2)
            parts << QStringLiteral("%1-%2").arg(QLatin1String(kDayNames[day]), QLatin1String(kDayNames[last]));
        else
            for (int each = day; each <= last; ++each)
                parts << QLatin1String(kDayNames[each]);
        day = last + 1;
    }
    return parts.join(u',');
}

} // namespace

QString ScheduleRule::toText() const
{
    return daysText(days) + u' ' + from.toString(QStringLiteral("HH:mm")) + u'-' +
           to.toString(QStringLiteral("HH:mm"));
}

std::optional<ScheduleRule> ScheduleRule::fromText(const QString& text)
{
    static const QRegularExpression dash(QStringLiteral("\\s*-\\s*"));
    const QString simplified = text.simplified().replace(dash, QStringLiteral("-"));
    const qsizetype space = simplified.lastIndexOf(u' ');
    if (space <= 0)
        return std::nullopt;
    const QString range = simplified.mid(space + 1);
    const std::optional<QTime> from = timeOf(range.section(u'-', 0, 0));
    const std::optional<QTime> to = timeOf(range.section(u'-', 1));
    const quint8 days = daysOf(simplified.left(space).remove(u' '));
    if (!from || !to || days == 0 || range.count(u'-') != 1)
        return std::nullopt;
    return ScheduleRule{days, *from, *to};
}

bool Schedule::activeAt(const QDateTime& local) const
{
    if (!enabled)
        return false;
    const QDate date = local.date();
    if (leftOut.contains(date))
        return false;
    const QTime time = local.time();
    const int today = date.dayOfWeek();
    const int yesterday = today == 1 ? 7 : today - 1;
    for (const ScheduleRule& rule : rules) {
        if (!rule.from.isValid() || !rule.to.isValid())
            continue;
        if (!rule.crossesMidnight()) {
            if (rule.startsOn(today) && time >= rule.from && time < rule.to)
                return true;
            continue;
        }
        // Past midnight: from the start to the day's end, and on into the next morning.
        if (rule.startsOn(today) && time >= rule.from)
            return true;
        if (rule.startsOn(yesterday) && time < rule.to)
            return true;
    }
    return false;
}

namespace ScheduleRules {

QList<int> activeAt(const QList<Schedule>& schedules, const QDateTime& local)
{
    QList<int> active;
    for (int i = 0; i < schedules.size(); ++i)
        if (schedules[i].activeAt(local))
            active << i;
    return active;
}

QList<ScheduleRule> rulesFromLines(const QString& text, QStringList* problems)
{
    QList<ScheduleRule> rules;
    const QStringList lines = text.split(u'\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].trimmed().isEmpty())
            continue;
        if (const std::optional<ScheduleRule> rule = ScheduleRule::fromText(lines[i]))
            rules << *rule;
        else if (problems)
            *problems << QStringLiteral("Line %1 is no rule: \"%2\" (write it as Mon-Fri 08:00-18:00)")
                             .arg(i + 1)
                             .arg(lines[i].trimmed());
    }
    return rules;
}

QString linesOf(const QList<ScheduleRule>& rules)
{
    QStringList lines;
    for (const ScheduleRule& rule : rules)
        lines << rule.toText();
    return lines.join(u'\n');
}

QList<QDate> datesFromLines(const QString& text, QStringList* problems)
{
    QList<QDate> dates;
    const QStringList lines = text.split(u'\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty())
            continue;
        const QDate date = QDate::fromString(line, Qt::ISODate);
        if (date.isValid() && line.size() == 10) {
            if (!dates.contains(date))
                dates << date;
        } else if (problems) {
            *problems << QStringLiteral("Line %1 is no date: \"%2\" (write it as 2026-12-25)").arg(i + 1).arg(line);
        }
    }
    return dates;
}

QString linesOf(const QList<QDate>& dates)
{
    QStringList lines;
    for (const QDate& date : dates)
        lines << date.toString(Qt::ISODate);
    return lines.join(u'\n');
}

} // namespace ScheduleRules
