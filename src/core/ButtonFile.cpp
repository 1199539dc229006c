#include "ButtonFile.h"

#include "Globals.h"
#include "SaveError.h"
#include "TextCodec.h"
#include "TextFile.h"
#include "TextRules.h"

namespace {
const QString kNumberEnd = QStringLiteral("[^^]");
const QString kCaptionEnd = QStringLiteral("[||]");
constexpr qsizetype kMarkLength = 4;
constexpr int kLastSavedButton = 32;
} // namespace

void ClearButtons()
{
    Globals& g = globals();
    for (int i = 0; i <= kLastSavedButton; ++i) {
        g.BtnTitle[i].clear();
        g.BtnUrl[i].clear();
    }
}

bool ParseButtonText(const QString& text)
{
    Globals& g = globals();
    bool valid = true;
    // Each line is looked at in place; only its caption and address are copied out.
    TextRules::forEachInputLine(text, [&](QStringView value) {
        const qsizetype p = value.indexOf(kNumberEnd);
        if (p < 0)
            return valid = false;
        RunError error;
        const auto number = TextRules::toInteger(TextRules::val(value.first(p).toString()), &error);
        if (!number || *number < 0 || *number >= kButtonCapacity)
            return valid = false;
        const QStringView rest = value.sliced(p + kMarkLength);
        const qsizetype q = rest.indexOf(kCaptionEnd);
        if (q < 0)
            return valid = false;
        g.BtnTitle[*number] = rest.first(q).toString();
        g.BtnUrl[*number] = rest.sliced(q + kMarkLength).toString();
        return true;
    });
    return valid;
}

bool LoadButtonFile(const QString& path)
{
    ClearButtons();
    const TextFile::ReadResult file = TextFile::readBytes(path);
    if (!file.error.ok())
        return false;
    return ParseButtonText(TextCodec::decode(file.bytes));
}

bool SaveButtonFile(const QString& path)
{
    Globals& g = globals();
    QStringList lines;
    for (int i = 0; i <= kLastSavedButton; ++i) {
        if (TextRules::trimSpaces(g.BtnTitle[i]).isEmpty())
            continue;
        QString line = QString::number(i) + kNumberEnd + g.BtnTitle[i] + kCaptionEnd + g.BtnUrl[i];
        line.replace(u',', u'~');
        lines.append(line);
    }
    const RunError error = TextFile::writeLines(path, lines);
    if (!error.ok()) {
        showSaveError(error);
        return false;
    }
    g.ButtonsChanged = false;
    return true;
}
