#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QTime>

#include <optional>

// One rule of a schedule: the days of the week it starts on and a range of wall-clock time. A range
// whose end is not after its start goes on past midnight into the next day (22:00-06:00); one
// whose end is its start lasts a whole day from there.
struct ScheduleRule
{
    // Bit (day - 1) for each day of the week it starts on, Monday (1) to Sunday (7).
    quint8 days = 0;
    QTime from;
    QTime to;

    bool startsOn(int dayOfWeek) const { return dayOfWeek >= 1 && dayOfWeek <= 7 && (days >> (dayOfWeek - 1)) & 1; }
    bool crossesMidnight() const { return to <= from; }

    // The rule as a person writes it: "Mon-Fri 08:00-18:00", "Sat,Sun 22:00-06:00", "Daily 00:00-00:00".
    QString toText() const;
    // None when `text` is no rule (no day, a time that is no time).
    static std::optional<ScheduleRule> fromText(const QString& text);

    bool operator==(const ScheduleRule&) const = default;
};

// A rotation with its hours: the list and its run choices, the windows it runs in (none: the run
// dialog's window), the rules of its hours and the dates it is left out (holidays, whole days).
struct Schedule
{
    enum class Start { AtFirstPage, WhereItStoppedToday };

    QString name;
    QString list;
    int intervalSeconds = 120;
    bool loop = true;
    bool severalWindows = false;
    bool keepPagesLoaded = false;
    QList<int> windows;
    QList<ScheduleRule> rules;
    QList<QDate> leftOut;
    Start start = Start::AtFirstPage;
    bool enabled = true;

    // Whether the rotation should be running at the wall-clock moment `local` (a date and time of
    // the machine's time zone, as its clock shows it). What runs is always worked out from the
    // rules and the moment, never counted down, so summer time, a clock set forward or back and a
    // machine that slept through a start time all come out right.
    bool activeAt(const QDateTime& local) const;

    bool operator==(const Schedule&) const = default;
};

namespace ScheduleRules {

// The schedules of `schedules` that should be running at `local`, by their index.
QList<int> activeAt(const QList<Schedule>& schedules, const QDateTime& local);

// The rules of `text`, one a line as a person writes them; each line that is no rule is named in
// `problems` ("Line 2 is no rule: ..."), blank lines are passed over.
QList<ScheduleRule> rulesFromLines(const QString& text, QStringList* problems);
QString linesOf(const QList<ScheduleRule>& rules);
// The dates of `text`, one a line as 2026-12-25; the others named in `problems`.
QList<QDate> datesFromLines(const QString& text, QStringList* problems);
QString linesOf(const QList<QDate>& dates);

} // namespace ScheduleRules
