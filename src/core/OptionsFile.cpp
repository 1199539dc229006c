#include "OptionsFile.h"

#include "Globals.h"
#include "SequentialInput.h"
#include "SettingsFile.h"
#include "TextRules.h"

namespace {

bool readInteger(SequentialInput& in, int* target, RunError* error)
{
    double value = 0;
    if (!in.readNumber(&value, error))
        return false;
    const auto integer = TextRules::toInteger(value, error);
    if (!integer)
        return false;
    *target = *integer;
    return true;
}

QString printFlag(bool on)
{
    return TextRules::printNumber(on ? 1 : 0);
}

} // namespace

RunError ReadOptionsText(const QString& text)
{
    Globals& g = globals();
    SequentialInput in(text);
    RunError error;
    for (int* target : {&g.MainLeft, &g.MainTop, &g.MainHeight, &g.MainWidth, &g.FontType, &g.StartListIndex})
        if (!readInteger(in, target, &error))
            return error;
    double flags[5] = {};
    for (double& flag : flags)
        if (!in.readNumber(&flag, &error))
            return error;
    if (!in.readString(&g.StartUrl, &error) || !in.readString(&g.NewWindowUrl, &error))
        return error;

    // A flag is on only when it is exactly 1.
    bool* options[5] = {&g.OptBold, &g.OptStartUrl, &g.OptStartList, &g.OptTheater, &g.OptOnTop};
    for (int i = 0; i < 5; ++i)
        *options[i] = flags[i] == 1.0;

    // Keep the window reachable. The replacement sizes differ from the defaults; they always have.
    if (g.MainLeft > 8800)
        g.MainLeft = 8800;
    if (g.MainTop > 6000)
        g.MainTop = 6000;
    if (g.MainHeight < 500)
        g.MainHeight = 7100;
    if (g.MainWidth < 2500)
        g.MainWidth = 9600;
    return RunError::None;
}

QStringList FormatOptions()
{
    const Globals& g = globals();
    QString numbers;
    for (int value : {g.MainLeft, g.MainTop, g.MainHeight, g.MainWidth, g.FontType, g.StartListIndex})
        numbers += TextRules::printNumber(value);
    QString flags;
    for (bool on : {g.OptBold, g.OptStartUrl, g.OptStartList, g.OptTheater, g.OptOnTop})
        flags += printFlag(on);
    return {numbers, flags, g.StartUrl, g.NewWindowUrl};
}

void LoadOptions()
{
    SettingsFile::load(QString::fromLatin1(kOptionsFileName),
                       QStringLiteral("Use the Utility Menu Option - Set Program Options"),
                       QStringLiteral("Error Loading Application Options"), ReadOptionsText);
}

bool SaveOptions()
{
    return SettingsFile::save(QString::fromLatin1(kOptionsFileName), FormatOptions());
}
