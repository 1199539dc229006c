#include "EventLog.h"

#include "core/Clock.h"
#include "core/Globals.h"

#include <QFile>
#include <QFileInfo>

#include <cstdlib>

namespace EventLog {

namespace {

QString isoLocalTime(const QDateTime& time)
{
    const int offset = time.offsetFromUtc();
    const int minutes = std::abs(offset) / 60;
    return time.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + (offset < 0 ? u'-' : u'+') +
           QStringLiteral("%1:%2").arg(minutes / 60, 2, 10, QLatin1Char('0')).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

void rotate(const QString& current)
{
    QFile::remove(current + QStringLiteral(".%1").arg(kKeptFiles));
    for (int i = kKeptFiles - 1; i >= 1; --i)
        QFile::rename(current + QStringLiteral(".%1").arg(i), current + QStringLiteral(".%1").arg(i + 1));
    QFile::rename(current, current + QStringLiteral(".1"));
}

} // namespace

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

void write(const QString& text)
{
    const QString file = path();
    const QByteArray line = (isoLocalTime(Clock::localNow()) + u' ' + text + u'\n').toUtf8();
    if (QFileInfo(file).size() + line.size() > kMaxBytes)
        rotate(file);
    QFile log(file);
    if (log.open(QIODevice::WriteOnly | QIODevice::Append))
        log.write(line);
}

} // namespace EventLog
