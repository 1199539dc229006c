#pragma once

#include "RunError.h"

#include <QString>

// Reads the values of a sequential settings file one after another, as the input statement that
// the options and colours files are defined for: numbers are separated by blanks, commas or line
// ends, a string runs to the next comma or line end, and line ends are crossed freely.
class SequentialInput
{
public:
    explicit SequentialInput(QString text) : m_text(std::move(text)) {}

    // The next number; TypeMismatch when the field is not a number, InputPastEndOfFile at the end.
    bool readNumber(double* value, RunError* error);

    // The next string field. Leading and trailing blanks are dropped; a field that begins with a
    // double quote runs to the closing quote and may then hold commas.
    bool readString(QString* value, RunError* error);

    bool atEnd() const { return m_pos >= m_text.size(); }

private:
    bool isBlank(qsizetype i) const { return m_text[i] == u' ' || m_text[i] == u'\t'; }
    bool isLineEnd(qsizetype i) const { return m_text[i] == u'\r' || m_text[i] == u'\n'; }
    void skipBlanks();
    // After a field: blanks, then at most one comma or one line end.
    void skipDelimiter();

    QString m_text;
    qsizetype m_pos = 0;
};
