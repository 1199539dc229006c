#include "MqttSettings.h"

#include "VantrelConf.h"

#include <QSettings>
#include <QSysInfo>

namespace {

constexpr char kGroup[] = "Mqtt";

QString topicSafe(QString text)
{
    for (QChar& c : text)
        if (c == u'+' || c == u'#' || c == u'/' || c.unicode() < 0x20)
            c = u'-';
    return text;
}

} // namespace

QString MqttSettings::nodeName() const
{
    const QString name = node.trimmed().isEmpty() ? QSysInfo::machineHostName() : node.trimmed();
    return topicSafe(name.isEmpty() ? QStringLiteral("vantrel") : name);
}

QString MqttSettings::base() const
{
    QString topic = baseTopic.trimmed();
    while (topic.endsWith(u'/'))
        topic.chop(1);
    topic.remove(u'+').remove(u'#');
    return topic.isEmpty() ? QStringLiteral("vantrel/") + nodeName() : topic;
}

MqttSettings MqttSettings::read()
{
    QSettings file(VantrelConf::path(), QSettings::IniFormat);
    file.beginGroup(QString::fromLatin1(kGroup));
    MqttSettings s;
    s.enabled = file.value(QStringLiteral("Enabled"), false).toBool();
    s.host = file.value(QStringLiteral("Host"), s.host).toString();
    bool ok = false;
    const int port = file.value(QStringLiteral("Port"), s.port).toInt(&ok);
    s.port = ok && port > 0 && port < 65536 ? port : 1883;
    s.tls = file.value(QStringLiteral("Tls"), false).toBool();
    s.caFile = file.value(QStringLiteral("CaFile")).toString();
    s.certFile = file.value(QStringLiteral("CertificateFile")).toString();
    s.keyFile = file.value(QStringLiteral("KeyFile")).toString();
    s.user = file.value(QStringLiteral("User")).toString();
    s.node = file.value(QStringLiteral("Node")).toString();
    s.baseTopic = file.value(QStringLiteral("BaseTopic")).toString();
    s.homeAssistant = file.value(QStringLiteral("HomeAssistantDiscovery"), true).toBool();
    return s;
}

bool MqttSettings::write() const
{
    QSettings file(VantrelConf::path(), QSettings::IniFormat);
    file.beginGroup(QString::fromLatin1(kGroup));
    file.setValue(QStringLiteral("Enabled"), enabled);
    file.setValue(QStringLiteral("Host"), host);
    file.setValue(QStringLiteral("Port"), port);
    file.setValue(QStringLiteral("Tls"), tls);
    file.setValue(QStringLiteral("CaFile"), caFile);
    file.setValue(QStringLiteral("CertificateFile"), certFile);
    file.setValue(QStringLiteral("KeyFile"), keyFile);
    file.setValue(QStringLiteral("User"), user);
    file.setValue(QStringLiteral("Node"), node);
    file.setValue(QStringLiteral("BaseTopic"), baseTopic);
    file.setValue(QStringLiteral("HomeAssistantDiscovery"), homeAssistant);
    file.endGroup();
    file.sync();
    return file.status() == QSettings::NoError;
}
