#include "SystemInfo.h"

#include "core/DialogService.h"

#include <QProcess>
#include <QStandardPaths>

namespace SystemInfo {

QStringList candidates()
{
    return {QStringLiteral("hardinfo2"), QStringLiteral("hardinfo"), QStringLiteral("kinfocenter"),
            QStringLiteral("gnome-system-monitor")};
}

QString findTool()
{
    for (const QString& name : candidates()) {
        const QString path = QStandardPaths::findExecutable(name);
        if (!path.isEmpty())
            return path;
    }
    return QString();
}

bool StartSysInfo()
{
    const QString tool = findTool();
    if (!tool.isEmpty() && QProcess::startDetached(tool, {}))
        return true;
    DialogService::message(QStringLiteral("System Information Is Unavailable At This Time"));
    return false;
}

} // namespace SystemInfo
