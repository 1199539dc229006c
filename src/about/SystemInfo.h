#pragma once

#include <QString>
#include <QStringList>

// The desktop's system-information program: the first of hardinfo2, hardinfo, kinfocenter and
// gnome-system-monitor found on PATH.
namespace SystemInfo {

QStringList candidates();
// The full path of the tool to start; "" when none is installed.
QString findTool();
// Starts the tool on its own; when none is found or it cannot start, shows "System Information Is
// Unavailable At This Time". True when it started.
bool StartSysInfo();

} // namespace SystemInfo
