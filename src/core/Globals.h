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

// Defaults of a new installation. The addresses: the start-up page, the page of a new window.
inline constexpr char kDefaultTitle[] = "Vantrel 2.0";
inline constexpr char kDefaultStartUrl[] = "https://www.wikipedia.org/";
inline constexpr char kDefaultNewWindowUrl[] = "https://duckduckgo.com/";
inline constexpr int kDefaultMainLeft = 7100; // twips
inline constexpr int kDefaultMainTop = 250;
inline constexpr int kDefaultMainHeight = 8100;
inline constexpr int kDefaultMainWidth = 4700;
inline constexpr int kDefaultFontType = 1;
// The ten window colours in the order of the colours file (see Globals::colors()).
inline constexpr int32_t kDefaultColors[10] = {
    0xFF8080, int32_t(0x80000008), 0xFFFFFF, 0xFFC0C0, 0x004040,
    0xE0E0E0, int32_t(0x80000012), 0,        0,        0xFFFFFF,
};

// The state that more than one part of the program reads and writes. There is exactly one
// instance, globals(); its members are read and written directly, like module variables.
// The program is single-threaded, so there is no locking.
struct Globals
{
    // Application and files
    QString AppTitle = QString::fromLatin1(kDefaultTitle);
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
    int MainLeft = kDefaultMainLeft;
    int MainTop = kDefaultMainTop;
    int MainHeight = kDefaultMainHeight;
    int MainWidth = kDefaultMainWidth;
    int FontType = kDefaultFontType;
    int StartListIndex = 0;
    bool OptBold = false;
    bool OptStartUrl = false;
    bool OptStartList = false;
    bool OptTheater = false;
    bool OptOnTop = true;
    QString StartUrl = QString::fromLatin1(kDefaultStartUrl);
    QString NewWindowUrl = QString::fromLatin1(kDefaultNewWindowUrl);

    // Window colours (kept in Colors.INI): 0x00BBGGRR, or 0x800000nn for system colour nn
    int32_t WindowBackColor = kDefaultColors[0];
    int32_t WindowTextColor = kDefaultColors[1];
    int32_t WindowEndColor = kDefaultColors[2];
    int32_t TabBackColor = kDefaultColors[3];
    int32_t TabTextColor = kDefaultColors[4];
    int32_t ListBackColor = kDefaultColors[5];
    int32_t ListTextColor = kDefaultColors[6];
    int32_t ButtonBackColor = kDefaultColors[7];
    int32_t ButtonTextColor = kDefaultColors[8];
    int32_t ButtonEndColor = kDefaultColors[9];

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
