#pragma once

#include <QList>
#include <QString>

#include <array>
#include <cstdint>

// Capacities of the shared arrays, fixed by the data file formats.
constexpr int kWindowSlots = 8;         // browsing slots 1..8
constexpr int kButtonCapacity = 34;     // BtnTitle/BtnUrl 0..33, buttons 0..31 shown
constexpr int kListCapacity = 1001;     // list records 0..1000
constexpr int kHistoryCapacity = 10001; // history records 0..10000

// Default addresses of a new installation: the start-up page, the page of a new window.
inline constexpr char kDefaultStartUrl[] = "https://www.wikipedia.org/";
inline constexpr char kDefaultNewWindowUrl[] = "https://duckduckgo.com/";

// The state that more than one part of the program reads and writes. There is exactly one
// instance, globals(); its members are read and written directly, like module variables.
// The program is single-threaded, so there is no locking.
struct Globals
{
    // Application and files
    QString AppTitle = QStringLiteral("Vantrel 2.0");
    QString AppPath;       // program folder, without a trailing separator
    QString FavoritesPath; // the user's Favorites folder

    // Browser windows
    int WindowCount = 0;
    int WindowIndex = 0;                           // current slot 1..8, 0 = none yet
    QList<QString> WindowUrl = QList<QString>(11); // 1..8 used; "" marks a free slot
    bool WebFormBusy = false;
    bool WindowFlagB = false;
    bool NewWindowMode = true;
    bool LastWindowMode = false;
    int NextRunItem = 1;
    QString CurrentUrl = QString::fromLatin1(kDefaultStartUrl);
    QString CurrentTitle;
    QString FavFolderSel;

    // Quick buttons, lists and history
    QList<QString> BtnTitle = QList<QString>(kButtonCapacity);
    QList<QString> BtnUrl = QList<QString>(kButtonCapacity);
    QList<QString> ListName = QList<QString>(kListCapacity);
    QList<QString> ListTitle = QList<QString>(kListCapacity);
    QList<QString> ListUrl = QList<QString>(kListCapacity);
    int ListCount = 0;
    QList<QString> HistGroup = QList<QString>(kHistoryCapacity);
    QList<QString> HistTitle = QList<QString>(kHistoryCapacity);
    QList<QString> HistUrl = QList<QString>(kHistoryCapacity);
    int HistoryCount = 0;
    bool ButtonsChanged = false;
    bool ListsChanged = false;
    bool HistoryChanged = false;

    // Options (kept in Options.INI); geometry in twips
    int MainLeft = 7100;
    int MainTop = 250;
    int MainHeight = 8100;
    int MainWidth = 4700;
    int FontType = 1;
    int StartListIndex = 0;
    bool OptBold = false;
    bool OptStartUrl = false;
    bool OptStartList = false;
    bool OptTheater = false;
    bool OptOnTop = true;
    QString StartUrl = QString::fromLatin1(kDefaultStartUrl);
    QString NewWindowUrl = QString::fromLatin1(kDefaultNewWindowUrl);

    // Window colours (kept in Colors.INI): 0x00BBGGRR, or 0x800000nn for system colour nn
    int32_t WindowBackColor = 0xFF8080;
    int32_t WindowTextColor = int32_t(0x80000008);
    int32_t WindowEndColor = 0xFFFFFF;
    int32_t TabBackColor = 0xFFC0C0;
    int32_t TabTextColor = 0x004040;
    int32_t ListBackColor = 0xE0E0E0;
    int32_t ListTextColor = int32_t(0x80000012);
    int32_t ButtonBackColor = 0;
    int32_t ButtonTextColor = 0;
    int32_t ButtonEndColor = 0xFFFFFF;

    // Run list
    bool RunListShown = false;
    bool RunListRunning = false;
    bool RunListLoop = false;
    bool RunListMulti = false;
    int RunInterval = 30; // seconds between two pages of a run
    QString RunListName;
    bool AboutShown = false;

    // The ten colour variables in the order of the colours file.
    std::array<int32_t*, 10> colors()
    {
        return {&WindowBackColor, &WindowTextColor, &WindowEndColor,  &TabBackColor,    &TabTextColor,
                &ListBackColor,   &ListTextColor,   &ButtonBackColor, &ButtonTextColor, &ButtonEndColor};
    }
};

// The one instance of the shared state.
Globals& globals();

// The full name of the data file `name` in the program folder.
QString appFilePath(const QString& name);

// Puts every member back to its initial value (a fresh start, and between tests).
void resetGlobals();
