#include "PageRecords.h"

#include "TextFile.h"
#include "TextRules.h"

namespace PageRecords {

namespace {
const QString delimiter = QString::fromUtf16(kDelimiter);
constexpr qsizetype kDelimiterLength = 5;
} // namespace

ParseResult parse(const QString& text, Arrays arrays)
{
    const qsizetype capacity = arrays.first.size();
    const QStringList values = TextRules::inputLines(text);
    int n = 0;
    for (QString value : values) {
        if (n >= capacity)
            break; // the next record has no room: the load ends with the arrays full
        value.replace(u'~', u',');
        const qsizetype p1 = value.indexOf(delimiter);
        if (p1 < 0)
            break;
        arrays.first[n] = value.left(p1);
        const qsizetype p2 = value.indexOf(delimiter, p1 + kDelimiterLength);
        if (p2 < 0)
            break; // the list name above stays in place, but the record is not counted
        arrays.title[n] = value.mid(p1 + kDelimiterLength, p2 - (p1 + kDelimiterLength));
        arrays.url[n] = value.mid(p2 + kDelimiterLength);
        ++n;
    }
    return {n, n == values.size()};
}

QString formatRecord(const QString& first, const QString& title, const QString& url)
{
    QString line = first + delimiter + title + delimiter + url;
    line.replace(u',', u'~');
    return line;
}

RunError save(const QString& path, Arrays arrays, int count)
{
    if (count > arrays.first.size())
        return RunError::SubscriptOutOfRange;
    QStringList lines;
    lines.reserve(std::max(count, 0));
    for (int i = 0; i < count; ++i)
        lines.append(formatRecord(arrays.first[i], arrays.title[i], arrays.url[i]));
    return TextFile::writeLines(path, lines);
}

} // namespace PageRecords
