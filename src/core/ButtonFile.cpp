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
    for (const QString& value : TextRules::inputLines(text)) {
        const qsizetype p = value.indexOf(kNumberEnd);
        if (p < 0)
            return false;
        RunError error;
        const auto number = TextRules::toInteger(TextRules::val(value.left(p)), &error);
        if (!number || *number < 0 || *number >= kButtonCapacity)
            return false;
        const QString rest = value.mid(p + kMarkLength);
        const qsizetype q = rest.indexOf(kCaptionEnd);
        if (q < 0)
            return false;
        g.BtnTitle[*number] = rest.left(q);
        g.BtnUrl[*number] = rest.mid(q + kMarkLength);
    }
    return true;
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
