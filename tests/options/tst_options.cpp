#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "about/About1.h"
#include "watch/EventLog.h"
#include "desktop/Autostart.h"
#include "options/MoreOptions.h"
#include "sync/FavoritesSync.h"
#include "settings/VantrelConf.h"
#include "options/OptionsPanel.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/StoredColor.h"
#include "favorites/QuickButtons.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "widgets/ColorSwatch.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QTabBar>
#include <QScrollArea>
#include <QStyle>
#include <QStyleOptionButton>
#include <QSpinBox>
#include <QPushButton>
#include <QDesktopServices>
#include <QTest>

#include <memory>

// The Options tab, the window colours and their painting.
class TestOptions : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    OptionsPanel* options() { return m_main->optionsPanel(); }
    void start()
    {
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(4);
    }
    void apply() { QTest::mouseClick(options()->WinOptnBtn(), Qt::LeftButton); }

    // Where a colour shows in a grabbed button: the pixels of that colour.
    static int countColor(const QImage& image, const QColor& color, int tolerance = 8)
    {
        int n = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                if (std::abs(c.red() - color.red()) <= tolerance &&
                    std::abs(c.green() - color.green()) <= tolerance &&
                    std::abs(c.blue() - color.blue()) <= tolerance)
                    ++n;
            }
        return n;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        QApplication::setPalette(QPalette());
    }

    void controlsCarryTheirCaptionsAndToolTips_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("tip");
        const QString listTip = "Use List to Load Internet Explorer Windows on Startup";
        QTest::newRow("CHKSTARTURL") << "CHKSTARTURL"
                                     << "Use StartUp URL"
                                     << "Use Startup URL instead of List";
        QTest::newRow("CHKLIST") << "CHKLIST"
                                 << "Use StartUp List" << listTip;
        QTest::newRow("CHKTHEATER") << "CHKTHEATER"
                                    << "Display Internet Explorer in Theater View" << listTip;
        QTest::newRow("CHKTOP") << "CHKTOP"
                                << "Keep Vantrel Window on Top of Screen" << listTip;
        QTest::newRow("CHKBOLD") << "CHKBOLD"
                                 << "Use Bold Text Type"
                                 << "Use Bold Text where available";
        QTest::newRow("RDTYPE_0") << "RDTYPE_0"
                                  << "Flat"
                                  << "Flat Text";
        QTest::newRow("RDTYPE_1") << "RDTYPE_1"
                                  << "Raised Light"
                                  << "Text slightly Raised";
        QTest::newRow("RDTYPE_2") << "RDTYPE_2"
                                  << "Lowered Light"
                                  << "Text slightly Lowered";
        QTest::newRow("RDTYPE_3") << "RDTYPE_3"
                                  << "Raised Heavy"
                                  << "Text heavily Raised";
        QTest::newRow("RDTYPE_4") << "RDTYPE_4"
                                  << "Lowered Heavy"
                                  << "Text Heavily Lowered";
        QTest::newRow("WinOptnBtn") << "WinOptnBtn"
                                    << "Apply"
                                    << "Set Program Window Options";
        QTest::newRow("HelpBtn") << "HelpBtn"
                                 << "Help"
                                 << "Help with Program Options";
        QTest::newRow("AboutBtn") << "AboutBtn"
                                  << "About"
                                  << "About Vantrel";
        QTest::newRow("Text2_0") << "Text2_0"
                                 << ""
                                 << "URL to load when starting Vantrel";
        QTest::newRow("Text2_1") << "Text2_1"
                                 << ""
                                 << "URL to load when clicking New Explorer Button";
        QTest::newRow("CMBLIST") << "CMBLIST"
                                 << ""
                                 << "Select Favorite List to run at Startup.";
        QTest::newRow("Text1_0") << "Text1_0"
                                 << ""
                                 << "Set  Window Background Color";
        QTest::newRow("Text1_4") << "Text1_4"
                                 << ""
                                 << "Set Window Text Color";
        QTest::newRow("Text1_8") << "Text1_8"
                                 << ""
                                 << "Set  Window End Gradient Background Color";
        QTest::newRow("Text1_1") << "Text1_1"
                                 << ""
                                 << "Set Tab Background Color";
        QTest::newRow("Text1_5") << "Text1_5"
                                 << ""
                                 << "Set Tab Text Color";
        QTest::newRow("Text1_2") << "Text1_2"
                                 << ""
                                 << "Set List Background Color";
        QTest::newRow("Text1_6") << "Text1_6"
                                 << ""
                                 << "Set List Text Color";
        QTest::newRow("Text1_3") << "Text1_3"
                                 << ""
                                 << "Set Button Background Color";
        QTest::newRow("Text1_7") << "Text1_7"
                                 << ""
                                 << "Set Button Text Color";
        QTest::newRow("Text1_9") << "Text1_9"
                                 << ""
                                 << "Set Button End Gradient Background Color";
    }
    void controlsCarryTheirCaptionsAndToolTips()
    {
        QFETCH(QString, name);
        QFETCH(QString, caption);
        QFETCH(QString, tip);
        start();
        auto* widget = options()->findChild<QWidget*>(name);
        QVERIFY2(widget, qPrintable(name));
        QCOMPARE(widget->toolTip(), tip);
        if (auto* button = qobject_cast<QAbstractButton*>(widget))
            QCOMPARE(button->text(), caption);
    }
    void firstStartWithoutFilesShowsHintsAndApplyWritesBoth()
    {
        start();
        QCOMPARE(DialogService::shownTexts(),
                 (QStringList{"Use the Tools Tab to Set Window Colors",
                              "Use the Utility Menu Option - Set Program Options"}));
        QVERIFY(options()->CHKTOP()->isChecked());
        QVERIFY(options()->RDTYPE(1)->isChecked());
        QCOMPARE(options()->Text2(0)->text(), QString::fromLatin1(kDefaultStartUrl));
        QCOMPARE(options()->Text1(0)->value(), int32_t(0xFF8080));
        QCOMPARE(options()->Text1(4)->value(), int32_t(0x80000008));
        QCOMPARE(options()->Text1(9)->value(), int32_t(0xFFFFFF));
        apply();
        QCOMPARE(readAll(m_app->file("Colors.INI")), testData("Colors.default.INI"));
        QVERIFY(readAll(m_app->file("Options.INI")).startsWith(" " + QByteArray::number(g.MainLeft)));
    }
    void applyReadsEveryControl()
    {
        start();
        options()->CHKBOLD()->setChecked(true);
        options()->CHKSTARTURL()->setChecked(true);
        options()->CHKTHEATER()->setChecked(true);
        options()->CHKTOP()->setChecked(false);
        options()->RDTYPE(3)->setChecked(true);
        options()->Text2(0)->setText("  https://start.example/  ");
        options()->Text2(1)->setText("https://new.example/");
        const int height = m_main->height();
        apply();
        QVERIFY(g.OptBold && g.OptStartUrl && g.OptTheater);
        QVERIFY(!g.OptOnTop && !g.OptStartList);
        QCOMPARE(g.FontType, 3);
        QCOMPARE(g.StartUrl, QStringLiteral("https://start.example/"));
        QCOMPARE(g.NewWindowUrl, QStringLiteral("https://new.example/"));
        QCOMPARE(m_main->height(), height); // grown and shrunk again
        const QByteArray file = readAll(m_app->file("Options.INI"));
        QVERIFY(file.contains("\r\n 1  1  0  1  0 \r\nhttps://start.example/\r\nhttps://new.example/\r\n"));
    }
    void emptiedAddressKeepsTheOldOne()
    {
        start();
        options()->Text2(0)->clear();
        apply();
        QCOMPARE(g.StartUrl, QString::fromLatin1(kDefaultStartUrl));
        QCOMPARE(options()->Text2(0)->text(), QString());
    }
    void startUpListIndexBeyondTheListsIsReported()
    {
        QVERIFY(writeAll(m_app->file("Options.INI"),
                         " 7100  250  8100  4700  1  3 \r\n 0  0  0  0  1 \r\na\r\nb\r\n"));
        QVERIFY(writeAll(m_app->file("Colors.INI"), testData("Colors.default.INI")));
        g.ListName[0] = "Only";
        g.ListTitle[0] = " ";
        g.ListUrl[0] = " ";
        g.ListCount = 1;
        start();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error - 380 - Invalid property value"});
    }
    void swatchOpensTheColourDialogAndKeysChangeNothing()
    {
        start();
        ColorSwatch* swatch = options()->Text1(3);
        DialogService::setNextColor(QColor(10, 20, 30));
        QTest::mouseDClick(swatch, Qt::LeftButton);
        QCOMPARE(swatch->value(), StoredColor::fromColor(QColor(10, 20, 30)));
        DialogService::setNextColor(std::nullopt); // cancelled
        QTest::mouseDClick(swatch, Qt::LeftButton);
        QCOMPARE(swatch->value(), StoredColor::fromColor(QColor(10, 20, 30)));
        QTest::keyClicks(swatch, "123");
        QCOMPARE(swatch->value(), StoredColor::fromColor(QColor(10, 20, 30)));
        QCOMPARE(swatch->text(), QString());
    }
    void chosenColourIsNeitherAppliedNorSavedWithoutApply()
    {
        start();
        apply(); // the files as they are
        const QByteArray saved = readAll(m_app->file("Colors.INI"));
        DialogService::setNextColor(QColor(200, 0, 0));
        QTest::mouseDClick(options()->Text1(3), Qt::LeftButton);
        QCOMPARE(options()->Text1(3)->value(), int32_t(0x0000C8));
        QCOMPARE(g.ButtonBackColor, 0);
        QCOMPARE(m_main->surf()->NewBtn()->backColor(), 0);
        m_main->TabStrip1()->setCurrentIndex(0);
        QCOMPARE(readAll(m_app->file("Colors.INI")), saved);
        // The next start shows the saved colour again.
        m_main->Form_Unload();
        m_main.reset();
        resetGlobals();
        g.AppPath = m_app->path();
        start();
        QCOMPARE(options()->Text1(3)->value(), 0);
    }
    void newButtonColoursShowEverywhereAtOnceAndTheActiveRowLosesItsLook()
    {
        start();
        g.CurrentUrl = "https://a/";
        m_main->NewBtnAction(true);
        QTest::mouseClick(m_main->surf()->Button(0), Qt::LeftButton);
        QVERIFY(m_main->surf()->Button(0)->value());
        DialogService::setNextColor(QColor(0, 128, 0));
        QTest::mouseDClick(options()->Text1(3), Qt::LeftButton);
        DialogService::setNextColor(QColor(255, 255, 0));
        QTest::mouseDClick(options()->Text1(7), Qt::LeftButton);
        apply();
        const int32_t back = StoredColor::fromColor(QColor(0, 128, 0));
        const int32_t text = StoredColor::fromColor(QColor(255, 255, 0));
        for (const char* name : {"Button_0",   "Button_7",    "FavBtn_0",   "FavBtn_31",    "NewBtn",
                                 "SaveBtn",    "SaveListBtn", "RunListBtn", "SaveHistBtn",  "OrgFavBtn",
                                 "NewListBtn", "RefreshBtn",  "ToggleBtn",  "ClearHistBtn", "WinOptnBtn",
                                 "AboutBtn",   "CalendarBtn", "HelpBtn",    "AddFavBtn_0",  "AddListBtn_5"}) {
            auto* button = m_main->findChild<GradientButton*>(name);
            QVERIFY2(button, name);
            QCOMPARE(button->backColor(), back);
            QCOMPARE(button->textColor(), text);
            QCOMPARE(button->endColor(), int32_t(0xFFFFFF));
        }
        QVERIFY(!m_main->surf()->Button(0)->value()); // the active look is gone
    }
    void boldOptionAndTextStyleReachTheControls()
    {
        start();
        options()->CHKBOLD()->setChecked(true);
        options()->RDTYPE(4)->setChecked(true);
        apply();
        QVERIFY(m_main->surf()->NewBtn()->font().bold());
        QCOMPARE(m_main->surf()->NewBtn()->textStyle(), 4);
        QVERIFY(m_main->SSTree1()->font().bold());
        QVERIFY(options()->CHKTOP()->font().bold());
        options()->CHKBOLD()->setChecked(false);
        apply();
        for (const char* name : {"NewBtn", "Button_3", "FavBtn_4", "SSTree1", "SSTree2", "SSTree3", "CHKTOP",
                                 "RDTYPE_1", "Text2_0", "DistFavBtn"})
            QVERIFY2(!m_main->findChild<QWidget*>(name)->font().bold(), name);
    }
    void checkBoxesLetTheWindowBackgroundShowThroughTheirRow()
    {
        // A dark scheme: white text on a window that runs from black to dark blue, bold.
        QVERIFY(writeAll(m_app->file("Colors.INI"),
                         " 0  16777215  8388608  16761024  16448  14737632 -2147483630  0  0  8388608 \r\n"));
        start();
        options()->CHKBOLD()->setChecked(true);
        apply();
        auto* scroll = m_main->findChild<QScrollArea*>("OptionsScroll");
        int sampled = 0;
        for (QCheckBox* box : {options()->CHKBOLD(), options()->CHKSTARTURL(), options()->CHKLIST(),
                               options()->CHKTHEATER(), options()->CHKTOP()}) {
            QVERIFY2(!box->autoFillBackground(), qPrintable(box->objectName()));
            QCOMPARE(box->palette().color(QPalette::WindowText), QColor(255, 255, 255));
            // Right of the caption the row shows the window's gradient, well on its way from black to
            // blue there, not a band of the box's own.
            scroll->ensureWidgetVisible(box);
            QStyleOptionButton option;
            option.initFrom(box);
            const QRect contents = box->style()->subElementRect(QStyle::SE_CheckBoxContents, &option, box);
            const int captionEnd = contents.left() + box->fontMetrics().horizontalAdvance(box->text()) + 6;
            const QPoint beside = box->mapTo(m_main.get(), QPoint(captionEnd, box->height() / 2));
            const QRect viewport(scroll->viewport()->mapTo(m_main.get(), QPoint(0, 0)), scroll->viewport()->size());
            if (!viewport.adjusted(0, 0, -4, 0).contains(beside) || beside.x() < viewport.center().x())
                continue; // a caption that reaches past the middle of the window leaves no such place
            const QColor seen = m_main->grab().toImage().pixelColor(beside);
            QVERIFY2(seen.blue() >= 0x30 && seen.red() < 0x10 && seen.green() < 0x10,
                     qPrintable(box->objectName() + " " + seen.name()));
            ++sampled;
        }
        QVERIFY(sampled >= 2);
    }
    void captionsOfTheTabsAndFramesFollowTheBoldOption()
    {
        start();
        QTabBar* tabs = m_main->TabStrip1()->tabBar();
        for (bool bold : {true, false}) {
            options()->CHKBOLD()->setChecked(bold);
            apply();
            QVERIFY(tabs->styleSheet().contains(bold ? "font-weight: bold" : "font-weight: normal"));
            QVERIFY(!tabs->styleSheet().contains(":selected")); // the selected tab is no exception
            for (const char* frame : {"Frame6", "Frame7"})
                QCOMPARE(m_main->findChild<QWidget*>(frame)->font().bold(), bold);
        }
    }
    void theDistributeButtonAndTheLabelsTakeTheWindowColours()
    {
        QVERIFY(writeAll(m_app->file("Colors.INI"),
                         " 4194304  16777215  8388608  16761024  16448  14737632 -2147483630  0  0  8388608 \r\n"));
        start();
        auto* hint = m_main->findChild<GradientButton*>("DistFavBtn");
        const Globals& g = globals();
        QCOMPARE(hint->backColor(), g.WindowBackColor);
        QCOMPARE(hint->textColor(), g.WindowTextColor);
        QCOMPARE(hint->endColor(), g.WindowEndColor);
        QVERIFY(hint->backColor() != g.ButtonBackColor);
    }
    void theCalendarsTitleRowTakesTheListColours()
    {
        QVERIFY(
            writeAll(m_app->file("Colors.INI"),
                     " 16744576 -2147483640  16777215  16761024  16448  255  65280  0  0  16777215 \r\n"));
        start();
        m_main->TabStrip1()->setCurrentIndex(0);
        QTest::mouseClick(m_main->surf()->CalendarBtn(), Qt::LeftButton);
        auto* title = m_main->findChild<QWidget*>("qt_calendar_navigationbar");
        QVERIFY(title);
        QCOMPARE(title->palette().color(QPalette::Highlight), QColor(255, 0, 0));
        QCOMPARE(title->palette().color(QPalette::HighlightedText), QColor(0, 255, 0));
        auto* month = m_main->findChild<QWidget*>("qt_calendar_monthbutton");
        QVERIFY(month);
        QCOMPARE(month->palette().color(QPalette::ButtonText), QColor(0, 255, 0));
    }
    void moreOptionsShowsTheAdditionsSettingsAndKeepsThemOnOk()
    {
        start();
        QTest::mouseClick(options()->MoreOptionsBtn(), Qt::LeftButton);
        MoreOptions* more = options()->moreOptions();
        QVERIFY(more && more->isVisible());
        QCOMPARE(more->windowTitle(), QStringLiteral("More Options"));
        QCOMPARE(options()->MoreOptionsBtn()->text(), QStringLiteral("More..."));
        for (const VantrelConf::Setting& setting : VantrelConf::all()) {
            QWidget* control = more->control(setting.key);
            QVERIFY2(control, setting.key);
            QCOMPARE(control->toolTip(), setting.toolTip);
        }
        auto* show = qobject_cast<QCheckBox*>(more->control(VantrelConf::kShowWhenLoaded));
        auto* wait = qobject_cast<QSpinBox*>(more->control(VantrelConf::kReadySeconds));
        auto* reload = qobject_cast<QSpinBox*>(more->control(VantrelConf::kKeptReloadMinutes));
        QVERIFY(show && wait && reload);
        QVERIFY(show->isChecked());
        QCOMPARE(reload->text(), QStringLiteral("never"));
        // Cancel keeps what was stored.
        show->setChecked(false);
        QTest::mouseClick(more->findChild<QPushButton*>("CancelBtn"), Qt::LeftButton);
        QVERIFY(!more->isVisible());
        QVERIFY(VantrelConf::flag(VantrelConf::kShowWhenLoaded));
        // OK stores what is shown.
        QTest::mouseClick(options()->MoreOptionsBtn(), Qt::LeftButton);
        QVERIFY(show->isChecked()); // shown anew from the file
        show->setChecked(false);
        wait->setValue(30);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!more->isVisible());
        QVERIFY(!VantrelConf::flag(VantrelConf::kShowWhenLoaded));
        QCOMPARE(VantrelConf::value(VantrelConf::kReadySeconds), 30);
        QVERIFY(readAll(m_app->file("Vantrel.conf")).contains("LongestWaitForAPageSeconds=30"));
    }
    void theBookmarksFileKeptInStepIsChosenUnderItsBox()
    {
        start();
        options()->MoreOptionsBtn_Click();
        MoreOptions* more = options()->moreOptions();
        auto* on = qobject_cast<QCheckBox*>(more->control(VantrelConf::kSyncWithFile));
        auto* file = more->findChild<QLineEdit*>("SyncFileEdit");
        auto* choose = more->findChild<QPushButton*>("SyncFileBtn");
        QVERIFY(on && file && choose);
        QCOMPARE(on->text(), QStringLiteral("Keep my Favorites in step with a bookmarks file"));
        QVERIFY(!on->isChecked()); // off until a person switches it on
        QVERIFY(!file->isEnabled() && !choose->isEnabled());
        on->setChecked(true);
        QVERIFY(file->isEnabled() && choose->isEnabled());
        // Without a file it says what is missing and stays.
        DialogService::clearShown();
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Choose the bookmarks file to keep your Favorites in step with."});
        QVERIFY(more->isVisible());
        QVERIFY(!VantrelConf::flag(VantrelConf::kSyncWithFile));
        // Chosen: a file there is joined, not replaced, so the dialog asks nothing of it.
        const QString shared = m_app->home() + "/Sync/bookmarks.xbel";
        QVERIFY(QDir().mkpath(m_app->home() + "/Sync"));
        DialogService::setNextFile(DialogService::FileChoice{shared, 0});
        QTest::mouseClick(choose, Qt::LeftButton);
        QCOMPARE(DialogService::fileCaptions().last(), QStringLiteral("Bookmarks File to Keep in Step"));
        QCOMPARE(file->text(), shared);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!more->isVisible());
        QVERIFY(VantrelConf::flag(VantrelConf::kSyncWithFile));
        QCOMPARE(VantrelConf::text(VantrelConf::kSyncFile), shared);
        // The running program follows at once: the file is written a little later.
        QVERIFY(m_main->favoritesSync()->isEnabled());
        QCOMPARE(m_main->favoritesSync()->file(), shared);
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(shared); }, FavoritesSync::kStartDelayMs + 3000));
        // Shown again from the settings; switched off, the program stops keeping it.
        options()->MoreOptionsBtn_Click();
        QCOMPARE(file->text(), shared);
        on->setChecked(false);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!m_main->favoritesSync()->isEnabled());
    }
    void startAtLoginWritesAndRemovesTheAutostartEntry()
    {
        start();
        options()->MoreOptionsBtn_Click();
        MoreOptions* more = options()->moreOptions();
        auto* login = qobject_cast<QCheckBox*>(more->control(VantrelConf::kStartAtLogin));
        QVERIFY(login);
        QCOMPARE(login->text(), QStringLiteral("Start Vantrel when I log in"));
        QVERIFY(!login->isChecked());
        const QString entry = m_app->config() + "/autostart/org.vantrel.Vantrel.desktop";
        QCOMPARE(Autostart::entryPath(), entry);
        login->setChecked(true);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!more->isVisible());
        const QByteArray written = readAll(entry);
        QVERIFY(written.startsWith("[Desktop Entry]\n"));
        QVERIFY(written.contains("\nExec=" + QCoreApplication::applicationFilePath().toUtf8() + "\n"));
        QVERIFY(written.contains("\nName=Vantrel\n"));
        // The entry is the setting: removed by hand on the desktop, the box shows it off.
        QVERIFY(QFile::remove(entry));
        options()->MoreOptionsBtn_Click();
        QVERIFY(!login->isChecked());
        login->setChecked(true);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(QFile::exists(entry));
        options()->MoreOptionsBtn_Click();
        QVERIFY(login->isChecked());
        login->setChecked(false);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!QFile::exists(entry));
        // An autostart folder that cannot be made says so, and the box shows what is.
        QVERIFY(QDir(m_app->config() + "/autostart").removeRecursively());
        QVERIFY(writeAll(m_app->config() + "/autostart", "a file in the folder's place"));
        options()->MoreOptionsBtn_Click();
        login->setChecked(true);
        DialogService::clearShown();
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().size(), 1);
        QVERIFY(DialogService::shownTexts().first().startsWith("Vantrel could not be set to start at login: "));
        QVERIFY(more->isVisible());
        QVERIFY(!login->isChecked());
    }
    void moreOptionsOpensTheLog()
    {
        start();
        options()->MoreOptionsBtn_Click();
        MoreOptions* more = options()->moreOptions();
        auto* log = more->findChild<QPushButton*>("OpenLogBtn");
        QVERIFY(log);
        DialogService::clearShown();
        QTest::mouseClick(log, Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Nothing has been logged yet: " + m_app->file("Vantrel.log")});
        EventLog::write("run started: L");
        UrlRecorder viewer;
        QDesktopServices::setUrlHandler("file", &viewer, "open");
        QTest::mouseClick(log, Qt::LeftButton);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(viewer.opened, QList<QUrl>{QUrl::fromLocalFile(m_app->file("Vantrel.log"))});
    }
    void listsTakeTheListColours()
    {
        QVERIFY(
            writeAll(m_app->file("Colors.INI"),
                     " 16744576 -2147483640  16777215  16761024  16448  255  65280  0  0  16777215 \r\n"));
        start();
        for (const char* name : {"SSTree1", "SSTree2", "SSTree3"}) {
            auto* tree = m_main->findChild<KeyedTree*>(name);
            QCOMPARE(tree->palette().color(QPalette::Base), QColor(255, 0, 0));
            QCOMPARE(tree->palette().color(QPalette::Text), QColor(0, 255, 0));
        }
    }
    void systemWindowTextFollowsTheDesktopTheme()
    {
        start(); // window text is the desktop's window-text colour
        QPalette dark = QApplication::palette();
        dark.setColor(QPalette::WindowText, QColor(1, 2, 3));
        QApplication::setPalette(dark);
        QCoreApplication::processEvents();
        QCOMPARE(m_main->findChild<QWidget*>("Frame1")->palette().color(QPalette::WindowText),
                 QColor(1, 2, 3));
        dark.setColor(QPalette::WindowText, QColor(200, 201, 202));
        QApplication::setPalette(dark);
        QCoreApplication::processEvents();
        QCOMPARE(m_main->findChild<QWidget*>("Frame1")->palette().color(QPalette::WindowText),
                 QColor(200, 201, 202));
        // A button's system colour is looked up each time it is painted.
        GradientButton button;
        button.setColors(int32_t(0x80000012), int32_t(0x80000012), int32_t(0x80000012));
        QPalette p = button.palette();
        p.setColor(QPalette::ButtonText, QColor(9, 8, 7));
        button.setPalette(p);
        QCOMPARE(button.resolvedTextColor(), QColor(9, 8, 7));
    }
    void runDialogIsColouredWhenItComesForward()
    {
        QVERIFY(writeAll(
            m_app->file("Colors.INI"),
            " 16744576 -2147483640  16777215  16761024  16448  255  65280  32768  65535  16777215 \r\n"));
        start();
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        RunList1* dialog = m_main->listsPanel()->runDialog();
        QApplication::setActiveWindow(dialog);
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QCOMPARE(dialog->GoBtn()->backColor(), int32_t(32768));
        QCOMPARE(dialog->GoBtn()->textColor(), int32_t(65535));
    }

    void aboutBoxIsColouredWhenItComesForward()
    {
        QVERIFY(writeAll(
            m_app->file("Colors.INI"),
            " 16744576 -2147483640  16777215  16761024  16448  255  65280  32768  65535  16777215 \r\n"));
        start();
        m_main->AboutBtn_Click();
        About1* about = m_main->aboutBox();
        QApplication::setActiveWindow(about);
        QVERIFY(QTest::qWaitForWindowActive(about));
        QCOMPARE(about->OKBtn()->backColor(), int32_t(32768));
        QCOMPARE(about->SysBtn()->textColor(), int32_t(65535));
    }

    // ---- the gradient button's painting -------------------------------------------------------
    void gradientRunsFromTheBackToTheEndColour()
    {
        GradientButton button("Sample", "", nullptr);
        button.resize(200, 40);
        button.setColors(StoredColor::fromColor(QColor(255, 0, 0)), 0,
                         StoredColor::fromColor(QColor(0, 0, 255)));
        const QImage image = button.grab().toImage();
        const QColor left = image.pixelColor(3, 20);
        const QColor right = image.pixelColor(196, 20);
        QVERIFY2(left.red() > 240 && left.blue() < 20, qPrintable(left.name()));
        QVERIFY2(right.blue() > 240 && right.red() < 20, qPrintable(right.name()));
        const QColor middle = image.pixelColor(100, 20);
        QVERIFY(middle.red() > 90 && middle.red() < 165);
    }
    void captionIsDrawnInTheTextColour()
    {
        GradientButton button("Sample", "WWWW", nullptr);
        button.resize(200, 40);
        const int32_t white = StoredColor::fromColor(Qt::white);
        button.setColors(white, StoredColor::fromColor(QColor(0, 0, 255)), white);
        button.setTextStyle(GradientButton::Flat);
        const QImage image = button.grab().toImage();
        QVERIFY(countColor(image, QColor(0, 0, 255), 30) > 20);
    }
    void styledCaptionsHaveALightCopyOffsetAsTheStyleSays_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QPoint>("offset");
        QTest::newRow("flat") << 0 << QPoint(0, 0);
        QTest::newRow("raised light") << 1 << QPoint(-1, -1);
        QTest::newRow("lowered light") << 2 << QPoint(1, 1);
        QTest::newRow("raised heavy") << 3 << QPoint(-2, -2);
        QTest::newRow("lowered heavy") << 4 << QPoint(2, 2);
    }
    void styledCaptionsHaveALightCopyOffsetAsTheStyleSays()
    {
        QFETCH(int, style);
        QFETCH(QPoint, offset);
        QCOMPARE(GradientButton::lightCopyOffset(style), offset);
        // On a black button with black text, only the light copy shows: its pixels sit where the
        // caption's would be, moved by the offset.
        GradientButton button("Sample", "IIII", nullptr);
        button.resize(120, 40);
        QPalette p = button.palette();
        p.setColor(QPalette::Light, QColor(255, 255, 255));
        button.setPalette(p);
        button.setColors(0, 0, 0);
        button.setTextStyle(style);
        const QImage image = button.grab().toImage();
        // The light pixels of the copy, away from the bevel at the edges.
        QRect light;
        for (int y = 3; y < image.height() - 3; ++y)
            for (int x = 3; x < image.width() - 3; ++x)
                if (image.pixelColor(x, y).lightness() > 200)
                    light |= QRect(x, y, 1, 1);
        if (style == 0) {
            QVERIFY(light.isNull());
            return;
        }
        QVERIFY(!light.isNull());
        // The same caption flat, in white, shows where the unmoved text lies.
        GradientButton plain("Sample", "IIII", nullptr);
        plain.resize(120, 40);
        plain.setColors(0, StoredColor::fromColor(Qt::white), 0);
        const QImage reference = plain.grab().toImage();
        QRect text;
        for (int y = 3; y < reference.height() - 3; ++y)
            for (int x = 3; x < reference.width() - 3; ++x)
                if (reference.pixelColor(x, y).lightness() > 200)
                    text |= QRect(x, y, 1, 1);
        QCOMPARE(light.topLeft() - text.topLeft(), offset);
    }
};

VANTREL_GUI_TEST_MAIN(TestOptions)
#include "tst_options.moc"
