#include "ColorsFile.h"

#include "DialogService.h"
#include "Globals.h"
#include "SequentialInput.h"
#include "TextCodec.h"
#include "TextFile.h"
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
    const TextFile::ReadResult file = TextFile::readBytes(appFilePath(QString::fromLatin1(kColorsFileName)));
    if (file.error.number == RunError::FileNotFound) {
        DialogService::message(QStringLiteral("Use the Tools Tab to Set Window Colors"));
        return;
    }
    if (!file.error.ok() || !ReadColorsText(TextCodec::decode(file.bytes)).ok())
        DialogService::message(QStringLiteral("Error Loading Application Window Colors"));
}

bool SaveColors()
{
    const RunError error =
        TextFile::writeLines(appFilePath(QString::fromLatin1(kColorsFileName)), {FormatColors()});
    if (!error.ok()) {
        DialogService::message(QStringLiteral("Error: ") + error.numberAndText());
        return false;
    }
    return true;
}
