#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "surf/SurfPanel.h"
#include "about/About1.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/OptionsFile.h"
#include "favorites/FavoritesPanel.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "widgets/GradientButton.h"
#include "widgets/Twips.h"

#include <QCalendarWidget>
#include <QGroupBox>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <memory>

// The main window's load, first focus, unload, tabs and layout, with scripted browser windows.
// Answers No, and looks at the screen at the moment of the question.
class AskingBackend : public DialogService::Backend
{
public:
    explicit AskingBackend(std::function<void()> look) : m_look(std::move(look)) {}
    int asked = 0;
    void showMessage(const QString&, const QString&) override {}
    DialogService::Answer askQuestion(const QString&, const QString&) override
    {
        if (asked++ == 0)
            m_look();
        return DialogService::Answer::No;
    }
    std::optional<QColor> chooseColor(const QString&, const QColor&) override { return std::nullopt; }

private:
    std::function<void()> m_look;
};

class TestMainWindow : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    void makeWindow()
    {
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
    }
    void writeOptions(const QString& line1, const QString& line2,
                      const QString& startUrl = "https://start.example/")
    {
        QVERIFY(
            writeAll(m_app->file("Options.INI"),
                     (line1 + "\r\n" + line2 + "\r\n" + startUrl + "\r\nhttps://new.example/\r\n").toUtf8()));
    }
    QString currentTab() const { return m_main->TabStrip1()->tabText(m_main->TabStrip1()->currentIndex()); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        makeWindow();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        Clock::setInstance(nullptr);
    }

    void firstLoadWithoutFilesShowsBothHintsAndUsesDefaults()
    {
        m_main->Form_Load();
        QCOMPARE(DialogService::shownTexts(),
                 (QStringList{"Use the Tools Tab to Set Window Colors",
                              "Use the Utility Menu Option - Set Program Options"}));
        QCOMPARE(m_main->size(), QSize(twipsToPixels(4700), twipsToPixels(8100)));
        QCOMPARE(m_main->pos(), QPoint(twipsToPixels(7100), twipsToPixels(250)));
        QVERIFY(m_main->windowFlags() & Qt::WindowStaysOnTopHint);
        QVERIFY(m_main->Timer1()->isActive());
        QCOMPARE(m_main->Timer1()->interval(), 600);
        QVERIFY(!m_main->FirstShow);
        QVERIFY(!m_main->OptionsDirty);
        QVERIFY(m_created.isEmpty());
        for (int row = 0; row < 8; ++row)
            QVERIFY(!m_main->surf()->Button(row)->isVisibleTo(m_main.get()));
        QCOMPARE(m_main->helpFile(), m_app->file("Help/Vantrel.Hlp"));
    }
    void calendarStartsOnToday()
    {
        ManualClock clock(QDateTime(QDate(2026, 3, 14), QTime(9, 0)));
        Clock::setInstance(&clock);
        m_main->Form_Load();
        QCOMPARE(m_main->surf()->Calendar1()->selectedDate(), QDate(2026, 3, 14));
    }
    void windowIsKeptOnTheScreen_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("top");
        QTest::addColumn<int>("expectedLeft");
        QTest::addColumn<int>("expectedTop");
        QTest::newRow("left -1 jumps to 800") << -1 << 250 << 800 << 250;
        QTest::newRow("left 9000 to 8800") << 9000 << 250 << 8800 << 250;
        QTest::newRow("top 6900 to 6800") << 100 << 6900 << 100 << 6800;
        QTest::newRow("top -5 jumps to 800") << 100 << -5 << 100 << 800;
    }
    void windowIsKeptOnTheScreen()
    {
        QFETCH(int, left);
        QFETCH(int, top);
        QFETCH(int, expectedLeft);
        QFETCH(int, expectedTop);
        // Options.INI holds at most 6000 for the top; a larger one comes from the running program.
        writeOptions(QString(" %1  %2  8100  4700  1  0 ").arg(left).arg(qMin(top, 6000)), " 0  0  0  0  0 ");
        if (top > 6000) {
            LoadOptions();
            g.MainTop = top;
        }
        m_main->Form_Load();
        if (top <= 6000) {
            QCOMPARE(g.MainLeft, expectedLeft);
            QCOMPARE(g.MainTop, expectedTop);
        }
        QCOMPARE(m_main->pos(), QPoint(twipsToPixels(g.MainLeft), twipsToPixels(g.MainTop)));
        QVERIFY(!(m_main->windowFlags() & Qt::WindowStaysOnTopHint));
    }
    void startUpUrlWinsOverTheStartUpList()
    {
        writeOptions(" 7100  250  8100  4700  1  0 ", " 0  1  1  0  1 ");
        m_main->Form_Load();
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://start.example/"});
        QVERIFY(!g.OptStartList);
        QVERIFY(!m_main->FirstShow);
        // Saved so when the options are saved.
        QVERIFY(SaveOptions());
        QVERIFY(readAll(m_app->file("Options.INI")).contains("\r\n 0  1  0  0  1 \r\n"));
    }
    void blankStartUpUrlOpensNothing()
    {
        writeOptions(" 7100  250  8100  4700  1  0 ", " 0  1  0  0  1 ", "   ");
        m_main->Form_Load();
        QVERIFY(m_created.isEmpty());
    }
    void firstFocusActsOnlyOnce()
    {
        writeOptions(" 7100  250  8100  4700  1  0 ", " 0  1  0  0  1 ");
        m_main->Form_Load();
        m_main->Form_GotFocus();
        QCOMPARE(m_created.size(), 1);
    }
    void closingAsksTheThreeQuestionsInOrderAndNoSavesOnlyTheOptions()
    {
        m_main->Form_Load();
        DialogService::clearShown();
        g.ListsChanged = true;
        g.HistoryChanged = true;
        g.ButtonsChanged = true;
        m_main->OptionsDirty = true;
        for (int i = 0; i < 3; ++i)
            DialogService::setNextAnswer(DialogService::Answer::No);
        m_main->close();
        QCOMPARE(DialogService::shownTexts(),
                 (QStringList{"Do you want to save Changes to Favorite Web Page Lists?",
                              "Do you want to save History of Web Page Viewing?",
                              "Do you want to save Changes to Web Page Button Assignments?"}));
        QVERIFY(!QFile::exists(m_app->file("DefaultList.NLS")));
        QVERIFY(!QFile::exists(m_app->file("BrowseHistory.LST")));
        QVERIFY(!QFile::exists(m_app->file("DefaultBtns.BLS")));
        QVERIFY(QFile::exists(m_app->file("Options.INI")));
    }
    void answeringYesSavesEachFile()
    {
        m_main->Form_Load();
        DialogService::clearShown();
        ListsTree* lists = m_main->listsPanel()->lists();
        QVERIFY(lists->AddListNode("L"));
        g.CurrentUrl = "u";
        g.CurrentTitle = "t";
        QVERIFY(lists->AddPageNode("L"));
        g.CurrentUrl = "hu";
        g.CurrentTitle = "ht";
        QVERIFY(m_main->historyPanel()->history()->CreateNode3("Internet Explorer 1"));
        g.BtnTitle[1] = "One";
        g.ListsChanged = g.HistoryChanged = g.ButtonsChanged = true;
        for (int i = 0; i < 3; ++i)
            DialogService::setNextAnswer(DialogService::Answer::Yes);
        m_main->Form_Unload();
        QCOMPARE(readAll(m_app->file("DefaultList.NLS")), QByteArray("L[#@!] [#@!] \r\nL[#@!]t[#@!]u\r\n"));
        QByteArray history;
        for (int slot = 1; slot <= 8; ++slot)
            history += "Internet Explorer " + QByteArray::number(slot) + "[#@!] [#@!] \r\n";
        QCOMPARE(readAll(m_app->file("BrowseHistory.LST")),
                 history + "Internet Explorer 1[#@!]ht[#@!]hu\r\n");
        QCOMPARE(readAll(m_app->file("DefaultBtns.BLS")), QByteArray("1[^^]One[||]\r\n"));
        QVERIFY(!QFile::exists(m_app->file("Options.INI"))); // not dirty: not saved
    }
    void unchangedDataAsksNothing()
    {
        m_main->Form_Load();
        DialogService::clearShown();
        m_main->Form_Unload();
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void unloadQuitsTheBrowserWindows()
    {
        m_main->Form_Load();
        g.CurrentUrl = "https://a.example/";
        m_main->NewBtnAction(true);
        g.CurrentUrl = "https://b.example/";
        m_main->NewBtnAction(true);
        QSignalSpy unloaded(m_main.get(), &Vantrel1::unloaded);
        m_main->Form_Unload();
        QCOMPARE(unloaded.size(), 1);
        QVERIFY(m_created[0]->calls.contains("quit"));
        QVERIFY(m_created[1]->calls.contains("quit"));
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(!g.WebFormBusy);
    }
    void surfTabHidesTheFavoritesTreeAndOtherTabsBringItBack()
    {
        m_main->Form_Load();
        m_main->show();
        QFrame* tree = m_main->Frame2();
        QCOMPARE(currentTab(), QStringLiteral("Surf"));
        QVERIFY(!tree->isVisible());
        QCOMPARE(tree->x(), twipsToPixels(-1100));
        QCOMPARE(tree->size(), QSize(0, 0));
        for (const QString& tab : {QString("Favorites"), QString("Lists"), QString("History")}) {
            m_main->TabStrip1()->setCurrentIndex(
                QStringList{"Surf", "Favorites", "Lists", "History", "Options"}.indexOf(tab));
            QVERIFY2(tree->isVisible(), qPrintable(tab));
            QCOMPARE(tree->pos(), QPoint(twipsToPixels(45), twipsToPixels(2835)));
            QCOMPARE(tree->width(), twipsToPixels(pixelsToTwips(m_main->width()) - 165));
            // The tree reaches as far as the panel above it leaves room: Frame4's real height.
            const int frame4 = pixelsToTwips(m_main->favoritesPanel()->Frame4()->height());
            QVERIFY(frame4 != 2400);
            QCOMPARE(tree->height(), twipsToPixels(pixelsToTwips(m_main->height()) - frame4 - 1500));
            QVERIFY(!m_main->surf()->isVisible());
        }
        m_main->TabStrip1()->setCurrentIndex(4);
        QVERIFY(!tree->isVisible());
        QCOMPARE(tree->x(), twipsToPixels(-1100));
        m_main->TabStrip1()->setCurrentIndex(0);
        QVERIFY(m_main->surf()->isVisible());
        QVERIFY(!tree->isVisible());
    }
    void tabChangeInATooSmallWindowChangesNothing()
    {
        m_main->Form_Load();
        m_main->show();
        m_main->setMinimumSize(1, 1);
        m_main->resize(twipsToPixels(700), twipsToPixels(900)); // narrower than 800, lower than 1000
        m_main->TabStrip1()->setCurrentIndex(1);
        QVERIFY(m_main->surf()->isVisible());
        QVERIFY(!m_main->Frame2()->isVisible());
    }
    void resizingBelowTheLimitsLeavesEverythingAndRecordsNothing()
    {
        m_main->Form_Load();
        m_main->show();
        m_main->setMinimumSize(1, 1);
        const QRect row = m_main->surf()->Button(0)->geometry();
        const int width = g.MainWidth;
        m_main->OptionsDirty = false;
        m_main->resize(twipsToPixels(450), twipsToPixels(3000));
        QCOMPARE(m_main->surf()->Button(0)->geometry(), row);
        QCOMPARE(g.MainWidth, width);
        QVERIFY(!m_main->OptionsDirty);
        m_main->resize(twipsToPixels(3000), twipsToPixels(550));
        QCOMPARE(m_main->surf()->Button(0)->geometry(), row);
        QVERIFY(!m_main->OptionsDirty);
    }
    void otherWindowsCloseBeforeTheFirstQuestion()
    {
        m_main->Form_Load();
        m_main->show();
        m_main->AboutBtn_Click();
        QVERIFY(m_main->aboutBox()->isVisible());
        m_main->listsPanel()->lists()->AddListNode("L");
        m_main->listsPanel()->RunListBtn_Click();
        QWidget* run = m_main->findChild<QWidget*>("RunList1", Qt::FindChildrenRecursively);
        QVERIFY(run && run->isVisible());
        g.ListsChanged = true;
        QStringList visibleAtQuestion;
        AskingBackend backend([&] {
            for (QWidget* w : QApplication::topLevelWidgets())
                if (w->isVisible() && w != m_main.get())
                    visibleAtQuestion << w->objectName();
        });
        DialogService::setBackend(&backend);
        m_main->close();
        DialogService::setBackend(nullptr);
        QCOMPARE(backend.asked, 1);
        QCOMPARE(visibleAtQuestion, QStringList{});
    }
    void aWindowNobodyMovedKeepsItsPlacementExactly()
    {
        // 7100, 250 and 4700 twips are no whole number of pixels at 96 dots an inch.
        writeOptions(" 7100  250  8100  4700  1  0 ", " 0  0  0  0  1 ");
        m_main->Form_Load();
        m_main->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        // The window is where it was put: a move to the same pixels is no change of placement.
        m_main->move(m_main->pos());
        m_main->resize(m_main->size());
        QCoreApplication::processEvents();
        QVERIFY(!m_main->OptionsDirty);
        m_main->close();
        QVERIFY(readAll(m_app->file("Options.INI")).startsWith(" 7100  250  8100  4700  1  0 \r\n"));
        // A real move is remembered, in the twips of its pixels.
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        m_main->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        QTRY_VERIFY(m_main->OptionsDirty == false);
        m_main->move(m_main->x() + 10, m_main->y());
        QCoreApplication::processEvents();
        QVERIFY(m_main->OptionsDirty);
        QCOMPARE(g.MainLeft, pixelsToTwips(twipsToPixels(7100) + 10));
        QCOMPARE(g.MainTop, 250);
        QCOMPARE(g.MainWidth, 4700);
    }
    void resizingRecordsThePlacementAndRelaysTheRows()
    {
        m_main->Form_Load();
        m_main->show();
        m_main->OptionsDirty = false;
        m_main->resize(twipsToPixels(6000), twipsToPixels(9000));
        QVERIFY(m_main->OptionsDirty);
        QCOMPARE(g.MainWidth, pixelsToTwips(twipsToPixels(6000)));
        QCOMPARE(g.MainHeight, pixelsToTwips(twipsToPixels(9000)));
        QCOMPARE(m_main->surf()->Button(0)->width(),
                 twipsToPixels(pixelsToTwips(twipsToPixels(6000)) - 500 - 750));
        QCOMPARE(m_main->TabStrip1()->height(), twipsToPixels(pixelsToTwips(twipsToPixels(9000)) - 400));
    }
    void timerShowsTheTimeOnTheCalendarPanelWhileItIsShown()
    {
        ManualClock clock(QDateTime(QDate(2026, 11, 20), QTime(7, 5, 9)));
        Clock::setInstance(&clock);
        m_main->Form_Load();
        m_main->show();
        QGroupBox* panel = m_main->surf()->Frame7();
        m_main->Timer1_Timer();
        QCOMPARE(panel->title(), QString()); // hidden: left alone
        panel->show();
        m_main->Timer1_Timer();
        QCOMPARE(panel->title(), QStringLiteral(" 07:05:09 "));
        clock.advanceSeconds(0.6 * 5);
        m_main->Timer1_Timer();
        QCOMPARE(panel->title(), QStringLiteral(" 07:05:12 "));
    }
    void everyControlHasItsName()
    {
        m_main->Form_Load();
        m_main->surf()->Calendar1(); // made when first needed
        for (const char* name :
             {"TabStrip1", "Frame1", "Frame2", "Frame4", "Frame7", "Frame8", "Calendar1", "NewBtn",
              "ToggleBtn", "QuikViewBtn", "CalendarBtn", "Timer1", "WebForm1", "TabPanel1", "TabPanel5",
              "Button_0", "Button_7", "AddFavBtn_3", "AddListBtn_7"})
            QVERIFY2(m_main->findChild<QObject*>(name), qPrintable(name));
        QCOMPARE(m_main->objectName(), QStringLiteral("Vantrel1"));
        QStringList tabs;
        for (int i = 0; i < m_main->TabStrip1()->count(); ++i)
            tabs << m_main->TabStrip1()->tabText(i);
        QCOMPARE(tabs, (QStringList{"Surf", "Favorites", "Lists", "History", "Options"}));
    }
};

VANTREL_GUI_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
