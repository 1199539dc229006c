#include "SearchIndex.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr QChar kSeparator = QChar(0x1f);

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber();
}

// What one word is worth where it was found first: in the name or in the address, as a whole
// word, as the start of one, or inside one.
int worth(QStringView text, qsizetype at, qsizetype length, bool inName)
{
    const bool starts = at == 0 || !isWordChar(text[at - 1]);
    const bool ends = at + length >= text.size() || !isWordChar(text[at + length]);
    const int kind = starts ? (ends ? 3 : 2) : 1;
    return inName ? 10 * kind + 30 : kind;
}

} // namespace

SearchIndex::SearchIndex(QList<Entry> entries) : m_entries(std::move(entries))
{
    m_folded.reserve(size_t(m_entries.size()));
    m_nameLength.reserve(size_t(m_entries.size()));
    for (const Entry& entry : m_entries) {
        const QString name = fold(entry.name);
        m_nameLength.push_back(int(name.size()));
        m_folded.push_back(name + kSeparator + fold(entry.address));
    }
}

QString SearchIndex::fold(QStringView text)
{
    // Decomposed, so that an accented letter is its letter followed by its marks.
    const QString decomposed = text.toString().normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        const QChar::Category category = c.category();
        if (category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
            category == QChar::Mark_Enclosing || c == kSeparator)
            continue;
        folded.append(c);
    }
    // Full case folding, where Qt's simple one stops: ß is written ss when it is not at hand.
    return folded.toCaseFolded().replace(QChar(0x00DF), QStringLiteral("ss"));
}

QStringList SearchIndex::words(const QString& query)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return fold(query).split(blanks, Qt::SkipEmptyParts);
}

int SearchIndex::score(int i, const QStringList& words) const
{
    const QString& text = m_folded[size_t(i)];
    const int nameLength = m_nameLength[size_t(i)];
    int total = 0;
    for (const QString& word : words) {
        const qsizetype at = text.indexOf(word);
        if (at < 0)
            return -1;
        total += worth(text, at, word.size(), at < nameLength);
    }
    return total;
}

SearchIndex::Result SearchIndex::find(const QString& query, Tree tree, int limit, const std::vector<int>* within,
                                      std::vector<int>* matched) const
{
    Result result;
    const QStringList folded = words(query);
    if (matched)
        matched->clear();
    if (folded.isEmpty())
        return result;
    std::vector<std::pair<int, int>> hits; // (score, entry)
    auto look = [&](int i) {
        if (m_entries.at(i).tree != tree)
            return;
        const int s = score(i, folded);
        if (s < 0)
            return;
        hits.emplace_back(s, i);
        if (matched)
            matched->push_back(i);
    };
    if (within) {
        for (const int i : *within)
            if (i >= 0 && i < size())
                look(i);
    } else {
        for (int i = 0; i < size(); ++i)
            look(i);
    }
    result.found = int(hits.size());
    auto better = [this](const std::pair<int, int>& a, const std::pair<int, int>& b) {
        if (a.first != b.first)
            return a.first > b.first;
        const Entry& ea = m_entries.at(a.second);
        const Entry& eb = m_entries.at(b.second);
        if (ea.recency != eb.recency)
            return ea.recency > eb.recency;
        if (m_nameLength[size_t(a.second)] != m_nameLength[size_t(b.second)])
            return m_nameLength[size_t(a.second)] < m_nameLength[size_t(b.second)];
        return a.second < b.second;
    };
    const auto end = hits.begin() + std::min<qsizetype>(qsizetype(hits.size()), std::max(limit, 0));
    std::partial_sort(hits.begin(), end, hits.end(), better);
    for (auto it = hits.begin(); it != end; ++it)
        result.best.append(it->second);
    return result;
}

qint64 SearchIndex::memoryBytes() const
{
    qint64 bytes = qint64(sizeof(*this));
    for (const Entry& entry : m_entries)
        bytes += qint64(sizeof(Entry)) +
                 2 * (entry.key.capacity() + entry.name.capacity() + entry.address.capacity() + entry.place.capacity());
    for (const QString& text : m_folded)
        bytes += qint64(sizeof(QString)) + 2 * text.capacity();
    bytes += qint64(m_nameLength.capacity() * sizeof(int));
    return bytes;
}
