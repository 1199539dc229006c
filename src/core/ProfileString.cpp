#include "ProfileString.h"

#include "TextCodec.h"
#include "TextFile.h"

namespace {

bool isProfileBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\v';
}

QStringView trimmed(QStringView s)
{
    qsizetype begin = 0;
    qsizetype end = s.size();
    while (begin < end && isProfileBlank(s[begin]))
        ++begin;
    while (end > begin && isProfileBlank(s[end - 1]))
        --end;
    return s.sliced(begin, end - begin);
}

QStringView withoutQuotes(QStringView v)
{
    if (v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front())
        return v.sliced(1, v.size() - 2);
    return v;
}

} // namespace

QString ProfileValue(const QString& text, const QString& section, const QString& key,
                     const QString& defaultValue, qsizetype maxLength)
{
    bool inSection = false;
    for (const QString& rawLine : TextCodec::splitLines(text)) {
        const QStringView line = trimmed(rawLine);
        if (line.isEmpty() || line.front() == u';')
            continue;
        if (line.front() == u'[') {
            if (inSection)
                break; // a second section of the same name is never read
            qsizetype close = line.indexOf(u']');
            if (close < 0)
                close = line.size();
            inSection = trimmed(line.sliced(1, close - 1)).compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        if (!inSection)
            continue;
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        if (trimmed(line.first(eq)).compare(key, Qt::CaseInsensitive) != 0)
            continue;
        const QStringView value = withoutQuotes(trimmed(line.sliced(eq + 1)));
        return (maxLength == kWholeProfileValue ? value : value.left(maxLength)).toString();
    }
    return defaultValue;
}

QString GetIniString(const QString& section, const QString& key, const QString& defaultValue,
                     const QString& fileName, qsizetype maxLength)
{
    const TextFile::ReadResult file = TextFile::readBytes(fileName);
    if (!file.error.ok())
        return defaultValue;
    return ProfileValue(TextCodec::decodeWithUtf16(file.bytes), section, key, defaultValue, maxLength);
}
