#include "ListPagesFile.h"

#include "IniFileStatus.h"
#include "core/Globals.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSettings>

namespace ListPagesFile {

namespace {

const QString kPages = QStringLiteral("Pages");
const QString kList = QStringLiteral("list");
const QString kAddress = QStringLiteral("address");

// One page's entry is found by its list's name in capitals, as the run finds a list, and its
// address as written.
QString pageOf(const Entry& entry)
{
    return entry.list.toUpper() + u'\n' + entry.address;
}

} // namespace

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

QList<Entry> read(const QString& path)
{
    QList<Entry> entries;
    if (!QFileInfo::exists(path))
        return entries;
    QSettings file(path, QSettings::IniFormat);
    QSet<QString> seen;
    const int size = file.beginReadArray(kPages);
    for (int i = 0; i < size; ++i) {
        file.setArrayIndex(i);
        Entry entry;
        entry.list = file.value(kList).toString();
        entry.address = file.value(kAddress).toString();
        QList<QPair<QString, QString>> values;
        for (const QString& key : file.childKeys())
            if (key != kList && key != kAddress)
                values.append({key, file.value(key).toString()});
        entry.settings = PageSettings::fromValues(values);
        if (entry.list.trimmed().isEmpty() || entry.address.trimmed().isEmpty() || entry.settings.isEmpty())
            continue;
        if (seen.contains(pageOf(entry)))
            continue;
        seen.insert(pageOf(entry));
        entries.append(entry);
    }
    file.endArray();
    return entries;
}

RunError write(const QString& path, const QList<Entry>& entries)
{
    QSettings file(path, QSettings::IniFormat);
    file.clear();
    file.beginWriteArray(kPages);
    int index = 0;
    for (const Entry& entry : entries) {
        if (entry.settings.isEmpty())
            continue;
        file.setArrayIndex(index++);
        file.setValue(kList, entry.list);
        file.setValue(kAddress, entry.address);
        for (const auto& [name, value] : entry.settings.values())
            file.setValue(name, value);
    }
    file.endArray();
    file.sync(); // written to a temporary file and renamed over the old one
    return iniWriteError(file, path);
}

} // namespace ListPagesFile
