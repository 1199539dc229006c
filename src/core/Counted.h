#pragma once

#include <QString>

// "1 folder", "2 folders": a count and what it counts, for the program's messages.
inline QString counted(qsizetype n, const char* one, const char* many)
{
    return QStringLiteral("%1 %2").arg(n).arg(QLatin1String(n == 1 ? one : many));
}
