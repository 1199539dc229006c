#include "LinkChecksFile.h"

#include "IniFileStatus.h"
#include "core/Globals.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace LinkChecksFile {

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

Checks read(const QString& path)
{
    Checks checks;
    if (!QFileInfo::exists(path))
        return checks;
    QSettings file(path, QSettings::IniFormat);
    const int size = file.beginReadArray(QStringLiteral("Checks"));
    for (int i = 0; i < size; ++i) {
        file.setArrayIndex(i);
        const QString address = file.value(QStringLiteral("address")).toString();
        Check check;
        check.when = QDateTime::fromString(file.value(QStringLiteral("when")).toString(), Qt::ISODate);
        check.verdict = file.value(QStringLiteral("verdict")).toString();
        check.status = file.value(QStringLiteral("status")).toInt();
        check.newAddress = file.value(QStringLiteral("newAddress")).toString();
        if (address.isEmpty() || !check.when.isValid() || check.verdict.isEmpty())
            continue;
        checks.insert(address, check);
    }
    file.endArray();
    return checks;
}

RunError write(const QString& path, const Checks& checks)
{
    QSettings file(path, QSettings::IniFormat);
    file.clear();
    QStringList addresses = checks.keys();
    std::sort(addresses.begin(), addresses.end()); // the same checks, the same bytes
    file.beginWriteArray(QStringLiteral("Checks"), int(addresses.size()));
    for (int i = 0; i < addresses.size(); ++i) {
        const Check& check = checks.value(addresses.at(i));
        file.setArrayIndex(i);
        file.setValue(QStringLiteral("address"), addresses.at(i));
        file.setValue(QStringLiteral("when"), check.when.toUTC().toString(Qt::ISODate));
        file.setValue(QStringLiteral("verdict"), check.verdict);
        file.setValue(QStringLiteral("status"), check.status);
        if (!check.newAddress.isEmpty())
            file.setValue(QStringLiteral("newAddress"), check.newAddress);
    }
    file.endArray();
    file.sync(); // written to a temporary file and renamed over the old one
    return iniWriteError(file, path);
}

} // namespace LinkChecksFile
