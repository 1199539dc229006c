#pragma once

#include "Schedule.h"
#include "core/RunError.h"

#include <QList>

// "Schedules.conf" in the program folder: the rotations with hours (Schedule), one entry each, in
// an INI file of Vantrel's own beside "Vantrel.conf", replaced as a whole and atomically each time
// it is written. A rule is kept as a person writes it ("Mon-Fri 08:00-18:00", several parted by
// "|"; a ";" would begin a comment there), so that the file can be read and mended by hand; a rule or a date that cannot be read is left out, and a schedule
// with no list is left out.
namespace SchedulesFile {

inline constexpr char kFileName[] = "Schedules.conf";

QString path();

// The schedules in the file, in its order; none when there is no file.
QList<Schedule> read(const QString& path);
RunError write(const QString& path, const QList<Schedule>& schedules);

} // namespace SchedulesFile
