#include "PageRecords.h"

#include "SaveError.h"
#include "TextCodec.h"
#include "TextFile.h"
#include "TextRules.h"

namespace PageRecords {

namespace {
const QString delimiter = QString::fromUtf16(kDelimiter);
constexpr qsizetype kDelimiterLength = 5;
} // namespace

namespace {

// Scans for the delimiter by its first character, which the search finds many characters at a time.
qsizetype findDelimiter(QStringView line, qsizetype from)
{
    for (qsizetype i = line.indexOf(u'[', from); i >= 0; i = line.indexOf(u'[', i + 1)) {
        if (line.size() - i < kDelimiterLength)
            return -1;
        if (line[i + 1] == u'#' && line[i + 2] == u'@' && line[i + 3] == u'!' && line[i + 4] == u']')
            return i;
    }
    return -1;
}

// The next line end at or after `from`, found with fast single-character searches. The last
// position of each kind of line end is remembered, so a file with only one kind is not searched
// again and again for the other.
class LineEnds
{
public:
    explicit LineEnds(QStringView text) : m_text(text) {}
    qsizetype next(qsizetype from)
    {
        if (m_cr < from)
            m_cr = find(u'\r', from);
        if (m_lf < from)
            m_lf = find(u'\n', from);
        return std::min(m_cr, m_lf);
    }

private:
    qsizetype find(char16_t c, qsizetype from)
    {
        const qsizetype i = m_text.indexOf(QChar(c), from);
        return i < 0 ? m_text.size() : i;
    }
    QStringView m_text;
    qsizetype m_cr = -1;
    qsizetype m_lf = -1;
};

} // namespace

// Each line is found, its "~" turned back into ",", its enclosing quotes dropped and its two
// delimiters located without copying the line. Records of one list or one window follow each
// other, so a first field equal to the previous one shares its string.
ParseResult parse(QString text, Arrays arrays)
{
    // Turning every "~" back into "," line by line is the same as doing it once for the whole text.
    for (qsizetype i = text.indexOf(u'~'); i >= 0; i = text.indexOf(u'~', i + 1))
        text[i] = u',';
    const QStringView all(text);
    const qsizetype capacity = arrays.first.size();
    LineEnds lineEnds(all);
    QString previousFirst;
    int n = 0;
    for (qsizetype pos = 0; pos < all.size();) {
        const qsizetype lineEnd = lineEnds.next(pos);
        QStringView value = all.sliced(pos, lineEnd - pos);
        pos = lineEnd + 1;
        if (lineEnd < all.size() && all[lineEnd] == u'\r' && pos < all.size() && all[pos] == u'\n')
            ++pos;
        value = TextRules::stripEnclosingQuotes(value);

        if (n >= capacity)
            return {n, false}; // no room for another record: the load ends with the arrays full
        const qsizetype p1 = findDelimiter(value, 0);
        if (p1 < 0)
            return {n, false};
        const QStringView name = value.first(p1);
        if (name != previousFirst)
            previousFirst = name.toString();
        arrays.first[n] = previousFirst;
        const qsizetype p2 = findDelimiter(value, p1 + kDelimiterLength);
        if (p2 < 0)
            return {n, false}; // the name above stays in place, but the record is not counted
        arrays.title[n] = value.sliced(p1 + kDelimiterLength, p2 - (p1 + kDelimiterLength)).toString();
        arrays.url[n] = value.sliced(p2 + kDelimiterLength).toString();
        ++n;
    }
    return {n, true};
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

ParseResult load(const QString& path, Arrays arrays)
{
    const TextFile::ReadResult file = TextFile::readBytes(path);
    if (!file.error.ok())
        return {0, false};
    return parse(TextCodec::decode(file.bytes), arrays);
}

bool saveOrReport(const QString& path, Arrays arrays, int count)
{
    const RunError error = save(path, arrays, count);
    if (!error.ok())
        showSaveError(error);
    return error.ok();
}

} // namespace PageRecords
