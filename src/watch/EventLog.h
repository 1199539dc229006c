#pragma once

#include <QString>

// "Vantrel.log" in the program folder: what happened while nobody watched (runs started and
// ended, pages opened, loads that failed, retries, crashes, reloads, given-up windows), one line
// each, with its local time in ISO 8601. It never grows past about 1 MB: the older lines move to
// "Vantrel.log.1" .. "Vantrel.log.3".
namespace EventLog {

inline constexpr char kFileName[] = "Vantrel.log";
inline constexpr qint64 kMaxBytes = 1000 * 1000;
inline constexpr int kKeptFiles = 3;

QString path();

// Appends one line. A log that cannot be written is no reason to stop anything: nothing happens.
void write(const QString& text);

} // namespace EventLog
