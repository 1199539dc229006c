#include "ColorsFile.h"

#include "Globals.h"
#include "SequentialInput.h"
#include "SettingsFile.h"
#include "TextRules.h"

RunError ReadColorsText(const QString& text)
{
    SequentialInput in(text);
    RunError error;
    for (int32_t* color : globals().colors()) {
        double value = 0;
        if (!in.readNumber(&value, &error))
            return error;
        // Any 32-bit value is kept as read; one that names no colour is refused when applied.
        const auto number = TextRules::toLong(value, &error);
        if (!number)
            return error;
        *color = *number;
    }
    return RunError::None;
}

QString FormatColors()
{
    QString line;
    for (const int32_t* color : globals().colors())
        line += TextRules::printNumber(*color);
    return line;
}

void LoadColors()
{
    SettingsFile::load(QString::fromLatin1(kColorsFileName),
                       QStringLiteral("Use the Tools Tab to Set Window Colors"),
                       QStringLiteral("Error Loading Application Window Colors"), ReadColorsText);
}

bool SaveColors()
{
    return SettingsFile::save(QString::fromLatin1(kColorsFileName), {FormatColors()});
}
