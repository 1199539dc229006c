#include "SequentialInput.h"

#include "TextRules.h"

void SequentialInput::skipBlanks()
{
    while (m_pos < m_text.size() && isBlank(m_pos))
        ++m_pos;
}

void SequentialInput::skipDelimiter()
{
    skipBlanks();
    if (m_pos >= m_text.size())
        return;
    if (m_text[m_pos] == u',') {
        ++m_pos;
    } else if (m_text[m_pos] == u'\r') {
        ++m_pos;
        if (m_pos < m_text.size() && m_text[m_pos] == u'\n')
            ++m_pos;
    } else if (m_text[m_pos] == u'\n') {
        ++m_pos;
    }
}

bool SequentialInput::readNumber(double* value, RunError* error)
{
    // Blank lines before a number are skipped.
    while (m_pos < m_text.size() && (isBlank(m_pos) || isLineEnd(m_pos)))
        ++m_pos;
    if (atEnd()) {
        *error = RunError::InputPastEndOfFile;
        return false;
    }
    const qsizetype start = m_pos;
    while (m_pos < m_text.size() && !isBlank(m_pos) && !isLineEnd(m_pos) && m_text[m_pos] != u',')
        ++m_pos;
    const auto number = TextRules::parseNumberToken(m_text.mid(start, m_pos - start), error);
    if (!number)
        return false;
    *value = *number;
    skipDelimiter();
    return true;
}

bool SequentialInput::readString(QString* value, RunError* error)
{
    skipBlanks();
    if (atEnd()) {
        *error = RunError::InputPastEndOfFile;
        return false;
    }
    if (m_text[m_pos] == u'"') {
        const qsizetype close = m_text.indexOf(u'"', m_pos + 1);
        const qsizetype end = close < 0 ? m_text.size() : close;
        *value = m_text.mid(m_pos + 1, end - m_pos - 1);
        m_pos = close < 0 ? end : close + 1;
        // Whatever follows the closing quote up to the delimiter is not part of the value.
        while (m_pos < m_text.size() && !isLineEnd(m_pos) && m_text[m_pos] != u',')
            ++m_pos;
        skipDelimiter();
        return true;
    }
    const qsizetype start = m_pos;
    while (m_pos < m_text.size() && !isLineEnd(m_pos) && m_text[m_pos] != u',')
        ++m_pos;
    qsizetype end = m_pos;
    while (end > start && (m_text[end - 1] == u' ' || m_text[end - 1] == u'\t'))
        --end;
    *value = m_text.mid(start, end - start);
    skipDelimiter();
    return true;
}
