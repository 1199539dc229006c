#pragma once

#include "RunError.h"

#include <QString>
#include <QStringList>

#include <optional>

// The string and number rules that the program's file formats were defined with.
namespace TextRules {

// Trims blanks (spaces only, not tabs) at both ends.
QString trimSpaces(const QString& text);

// The numeric value of the leading number in `text`: blanks, tabs and line feeds anywhere are
// ignored, "&H" and "&O" start hexadecimal and octal numbers, 0 when there is no number.
double val(const QString& text);

// Rounds to a 16-bit Integer, halves to the even neighbour; Overflow outside -32768..32767.
std::optional<int> toInteger(double value, RunError* error);

// Rounds to a 32-bit Long, halves to the even neighbour; Overflow outside its range.
std::optional<int32_t> toLong(double value, RunError* error);

// A whole token as a number, as the sequential input reads it: "" is 0, anything not a number
// is TypeMismatch.
std::optional<double> parseNumberToken(const QString& token, RunError* error);

// A value read as a whole line: one pair of enclosing double quotes is removed.
QString stripEnclosingQuotes(const QString& line);
QStringView stripEnclosingQuotes(QStringView line);

// The values of a record file (lists, history, buttons): one per line, each taken whole with one
// pair of enclosing quotes removed. The writers never put a comma into a line, so a comma can
// only come from another program; it is kept as text.
QStringList inputLines(const QString& text);

// The same values one by one, without copying them: `take` returns false to stop.
template <typename Take> void forEachInputLine(QStringView text, Take take)
{
    const QChar* const begin = text.data();
    const QChar* const end = begin + text.size();
    const QChar* lineStart = begin;
    for (const QChar* p = begin; p != end; ++p) {
        if (*p != u'\r' && *p != u'\n')
            continue;
        if (!take(stripEnclosingQuotes(QStringView(lineStart, p))))
            return;
        if (*p == u'\r' && p + 1 != end && p[1] == u'\n')
            ++p;
        lineStart = p + 1;
    }
    if (lineStart != end)
        take(stripEnclosingQuotes(QStringView(lineStart, end)));
}

// How the print statement writes a number: a blank in the sign place when it is not negative,
// the digits, one trailing blank.
QString printNumber(qint64 value);

} // namespace TextRules
