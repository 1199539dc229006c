#include "RemoteSettings.h"

#include "VantrelConf.h"

#include <QSettings>

RemoteSettings RemoteSettings::read()
{
    QSettings file(VantrelConf::path(), QSettings::IniFormat);
    file.beginGroup(QStringLiteral("Remote"));
    RemoteSettings s;
    s.enabled = file.value(QStringLiteral("Enabled"), false).toBool();
    s.localNetwork = file.value(QStringLiteral("LocalNetwork"), false).toBool();
    bool ok = false;
    const int port = file.value(QStringLiteral("Port"), s.port).toInt(&ok);
    s.port = ok && port >= 1024 && port < 65536 ? port : 8765;
    return s;
}

bool RemoteSettings::write() const
{
    QSettings file(VantrelConf::path(), QSettings::IniFormat);
    file.beginGroup(QStringLiteral("Remote"));
    file.setValue(QStringLiteral("Enabled"), enabled);
    file.setValue(QStringLiteral("LocalNetwork"), localNetwork);
    file.setValue(QStringLiteral("Port"), port);
    file.endGroup();
    file.sync();
    return file.status() == QSettings::NoError;
}
