#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/PageText.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/Twips.h"

#include <QGroupBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

#include <memory>

namespace {
const QString kMaximumQuestion =
    QStringLiteral("        That's It - Maximum is 8 ! - Continue in Last Window ?");
}

// Answers the limit's question with No, while the page that asked goes on asking for windows as
// a storm of window.open calls does while the question is on screen.
class StormBackend : public DialogService::Backend
{
public:
    ScriptedBrowserWindow* window = nullptr;
    int questions = 0;
    void showMessage(const QString&, const QString&) override {}
    DialogService::Answer askQuestion(const QString&, const QString&) override
    {
        ++questions;
        for (int i = 0; i < 10; ++i)
            emit window->newWindowRequested(QString("https://meanwhile%1.example/").arg(i), false);
        return DialogService::Answer::No;
    }
    std::optional<QColor> chooseColor(const QString&, const QColor&) override { return std::nullopt; }
};

// The pool and the rows with scripted windows in place of browser windows: fast tests of the slot
// logic. The real engine is tested in tst_browserwindow.
class TestWindowPool : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    SurfPanel* surf() { return m_main->surf(); }
    WebForm1* pool() { return m_main->webForm(); }
    ScriptedBrowserWindow* window(int slot) { return qobject_cast<ScriptedBrowserWindow*>(pool()->ie(slot)); }

    ScriptedBrowserWindow* open(const QString& url, bool newWindow = true)
    {
        g.CurrentUrl = url;
        const int before = m_created.size();
        m_main->NewBtnAction(newWindow);
        return m_created.size() > before ? m_created.last() : nullptr;
    }
    void openEight()
    {
        for (int i = 1; i <= 8; ++i)
            open(QString("https://page%1.example/").arg(i));
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(pool(), &m_created);
        m_main->Form_Load();
        DialogService::clearShown();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        ControlDrag::setTestHook(nullptr);
    }

    void eightPagesFillSlotsOneToEightInOrder()
    {
        openEight();
        QCOMPARE(m_created.size(), 8);
        QCOMPARE(g.WindowCount, 8);
        for (int slot = 1; slot <= 8; ++slot) {
            QCOMPARE(pool()->ie(slot), m_created[slot - 1]);
            QCOMPARE(g.WindowUrl[slot], QString("https://page%1.example/").arg(slot));
            QCOMPARE(window(slot)->navigations, QStringList{QString("https://page%1.example/").arg(slot)});
            QVERIFY(pool()->SlotOpen(slot));
            QVERIFY(surf()->Button(slot - 1)->isVisibleTo(m_main.get()));
            QVERIFY(surf()->AddFavBtn(slot - 1)->isVisibleTo(m_main.get()));
            QVERIFY(surf()->AddListBtn(slot - 1)->isVisibleTo(m_main.get()));
        }
        QCOMPARE(g.WindowIndex, 8);
    }
    void closingSlotThreeFreesOnlyItAndTheNextPageTakesIt()
    {
        openEight();
        window(3)->closeByHand();
        QCOMPARE(g.WindowCount, 7);
        QCOMPARE(g.WindowUrl[3], QString());
        QVERIFY(!pool()->SlotOpen(3));
        QVERIFY(!pool()->ie(3));
        QVERIFY(!surf()->Button(2)->isVisibleTo(m_main.get()));
        QVERIFY(!surf()->AddFavBtn(2)->isVisibleTo(m_main.get()));
        QVERIFY(!surf()->AddListBtn(2)->isVisibleTo(m_main.get()));
        QVERIFY(pool()->SlotOpen(4));
        ScriptedBrowserWindow* again = open("https://again.example/");
        QVERIFY(again);
        QCOMPARE(pool()->ie(3), again);
        QCOMPARE(g.WindowIndex, 3);
        QCOMPARE(g.WindowCount, 8);
        QVERIFY(surf()->Button(2)->isVisibleTo(m_main.get()));
    }
    void rowShowsAddressAtNavigationStartAndTitleWhenItArrives()
    {
        ScriptedBrowserWindow* w = open("https://a.example/");
        QSignalSpy history(pool(), &WebForm1::documentCompleted);
        emit w->beforeNavigate("https://a.example/");
        GradientButton* row = surf()->Button(0);
        QCOMPARE(row->text(), QStringLiteral("https://a.example/"));
        QCOMPARE(row->tag(), QStringLiteral("https://a.example/"));
        QVERIFY(row->value());
        QCOMPARE(row->backColor(), g.ButtonTextColor);
        QCOMPARE(row->textColor(), int32_t(0xFF0000));
        emit w->titleChange("A Title");
        QCOMPARE(row->text(), QStringLiteral("A Title"));
        w->title = "A Title";
        w->url = "https://a.example/";
        emit w->documentComplete("https://a.example/");
        QCOMPARE(row->text(), QStringLiteral("A Title"));
        QCOMPARE(row->toolTip(), QStringLiteral("https://a.example/"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("A Title"));
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://a.example/"));
        QCOMPARE(history.size(), 1);
        QCOMPARE(history[0][0].toString(), QStringLiteral("Internet Explorer 1"));
    }
    void untitledPageKeepsItsAddressUntilDocumentComplete()
    {
        ScriptedBrowserWindow* w = open("https://plain.example/");
        w->load("https://plain.example/page", QString());
        QCOMPARE(surf()->Button(0)->text(), QStringLiteral("https://plain.example/page"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("https://plain.example/page"));
    }
    void pageWithThreeFramesCompletesFourTimesAndEndsWithTheLastTitle()
    {
        open("https://x.example/");
        ScriptedBrowserWindow* w = open("https://frames.example/");
        QSignalSpy history(pool(), &WebForm1::documentCompleted);
        QStringList recorded;
        connect(pool(), &WebForm1::documentCompleted, this, [&] { recorded << g.CurrentUrl; });
        w->load("https://frames.example/", "Framed",
                {"https://f.example/1", "https://f.example/2", "https://f.example/3"});
        QCOMPARE(history.size(), 4); // three frames, then the page
        QCOMPARE(recorded, (QStringList{"https://f.example/1", "https://f.example/2", "https://f.example/3",
                                        "https://frames.example/"}));
        for (const auto& call : history)
            QCOMPARE(call[0].toString(), QStringLiteral("Internet Explorer 2"));
        QCOMPARE(surf()->Button(1)->text(), QStringLiteral("Framed"));
        QCOMPARE(surf()->Button(1)->tag(), QStringLiteral("https://frames.example/"));
    }
    void navigationBeginningMakesItsSlotCurrent()
    {
        openEight();
        emit window(2)->beforeNavigate("https://other.example/");
        QCOMPARE(g.WindowIndex, 2);
        emit window(2)->navigateComplete("https://other.example/");
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://other.example/"));
    }
    void theaterModeComesBeforeShowingNewAndReusedWindows()
    {
        g.OptTheater = true;
        ScriptedBrowserWindow* w = open("https://t.example/");
        QCOMPARE(w->calls, (QStringList{"theater on", "visible"}));
        w->calls.clear();
        open("https://t2.example/", false);
        QCOMPARE(w->calls, (QStringList{"visible", "theater on", "visible"})); // slot 1 shows at once too
        QCOMPARE(w->navigations.last(), QStringLiteral("https://t2.example/"));
        open("https://second.example/");
        ScriptedBrowserWindow* second = window(2);
        second->calls.clear();
        open("https://second-again.example/", false);
        QCOMPARE(second->calls, (QStringList{"theater on", "visible"}));
        g.OptTheater = false;
        open("https://second-plain.example/", false);
        QCOMPARE(second->calls.mid(2), (QStringList{"theater off", "visible"}));
    }
    void unloadQuitsEveryWindowAndKeepsTheCountAtZeroOrAbove()
    {
        openEight();
        g.LastWindowMode = true;
        QList<ScriptedBrowserWindow*> all = m_created;
        g.WindowCount = 6; // a count that went wrong may not go below zero
        pool()->Unload();
        for (ScriptedBrowserWindow* w : all)
            QVERIFY(w->calls.contains("quit"));
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(!g.WebFormBusy);
        QVERIFY(!g.LastWindowMode);
        for (int slot = 1; slot <= 8; ++slot)
            QCOMPARE(g.WindowUrl[slot], QString());
    }
    void ninthPageAsksAndYesMakesTheNextPageReplaceWindowEight()
    {
        openEight();
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QVERIFY(!open("https://ninth.example/"));
        QCOMPARE(DialogService::shownTexts(), QStringList{kMaximumQuestion});
        QVERIFY(g.LastWindowMode);
        QCOMPARE(window(8)->navigations.size(), 1); // the Yes opened nothing
        QVERIFY(!open("https://tenth.example/"));
        QCOMPARE(window(8)->navigations.last(), QStringLiteral("https://tenth.example/"));
        QCOMPARE(g.WindowIndex, 8);
        QCOMPARE(DialogService::shownTexts().size(), 1); // no second question
    }
    void answeringNoAtTheLimitChangesNothing()
    {
        openEight();
        DialogService::setNextAnswer(DialogService::Answer::No);
        open("https://ninth.example/");
        QVERIFY(!g.LastWindowMode);
        QCOMPARE(window(8)->navigations.size(), 1);
        DialogService::setNextAnswer(DialogService::Answer::No);
        open("https://ninth.example/");
        QCOMPARE(DialogService::shownTexts().size(), 2);
    }
    void closingAWindowAfterTheLimitClearsLastWindowModeAndUsesTheFreedSlot()
    {
        openEight();
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        open("https://ninth.example/");
        QVERIFY(g.LastWindowMode);
        window(5)->closeByHand();
        ScriptedBrowserWindow* w = open("https://fresh.example/");
        QVERIFY(!g.LastWindowMode);
        QCOMPARE(pool()->ie(5), w);
    }
    void currentWindowModeWithoutAnyWindowOpensSlotOne()
    {
        ScriptedBrowserWindow* w = open("https://first.example/", false);
        QVERIFY(w);
        QCOMPARE(pool()->ie(1), w);
        QCOMPARE(g.WindowCount, 1);
        QVERIFY(surf()->Button(0)->isVisibleTo(m_main.get()));
        // Now a page in the current window reuses it.
        QVERIFY(!open("https://first-again.example/", false));
        QCOMPARE(w->navigations.last(), QStringLiteral("https://first-again.example/"));
    }
    void calendarButtonBecomesUnavailableAtTheFourthNormalRow()
    {
        for (int i = 1; i <= 3; ++i) {
            open(QString("https://c%1.example/").arg(i));
            QVERIFY(surf()->CalendarBtn()->isEnabled());
        }
        open("https://c4.example/");
        QVERIFY(!surf()->CalendarBtn()->isEnabled());
    }
    void calendarButtonBecomesUnavailableAtTheSixthSmallRow()
    {
        QTest::mouseClick(surf()->QuikViewBtn(), Qt::LeftButton);
        QVERIFY(surf()->QuikViewBtn()->value());
        for (int i = 1; i <= 5; ++i) {
            open(QString("https://c%1.example/").arg(i));
            QVERIFY(surf()->CalendarBtn()->isEnabled());
            QVERIFY(!surf()->AddListBtn(i - 1)->isVisibleTo(m_main.get()));
        }
        open("https://c6.example/");
        QVERIFY(!surf()->CalendarBtn()->isEnabled());
    }
    void unloadAppliesTheCalendarRuleWithItsOwnLimits()
    {
        QTest::mouseClick(surf()->QuikViewBtn(), Qt::LeftButton);
        for (int i = 1; i <= 7; ++i)
            open(QString("https://c%1.example/").arg(i));
        QVERIFY(!surf()->CalendarBtn()->isEnabled());
        pool()->Unload();
        QVERIFY(surf()->CalendarBtn()->isEnabled());
    }
    void clickOnARowWhileARowIsMarkedChangesTheActiveRowButNotTheWindow()
    {
        open("https://one.example/");
        open("https://two.example/");
        window(1)->calls.clear();
        window(2)->calls.clear();
        g.WindowFlagB = true;
        QTest::mouseClick(surf()->Button(0), Qt::LeftButton);
        g.WindowFlagB = false;
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(surf()->Button(0)->value());
        QVERIFY(!surf()->Button(1)->value());
        QVERIFY(window(1)->calls.isEmpty());
        QVERIFY(window(2)->calls.isEmpty());
    }
    void clickOnARowBringsItsWindowAloneIntoView()
    {
        open("https://one.example/");
        open("https://two.example/");
        QTest::mouseClick(surf()->Button(0), Qt::LeftButton);
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
        QCOMPARE(surf()->Button(0)->backColor(), g.ButtonTextColor);
        QCOMPARE(surf()->Button(0)->textColor(), int32_t(0xFF0000));
        QTest::mouseClick(surf()->Button(1), Qt::LeftButton);
        QVERIFY(!window(1)->isVisible());
        QVERIFY(window(2)->isVisible());
        QCOMPARE(surf()->Button(0)->backColor(), g.ButtonBackColor); // back to the normal look
        QVERIFY(!surf()->Button(0)->value());
    }
    void timedBrowseWithEightWindowsCyclesThroughThemAll()
    {
        openEight();
        g.RunListRunning = true;
        g.RunListMulti = true;
        m_main->webForm()->RunNavigating = true;
        QList<int> visited;
        for (int i = 0; i < 9; ++i) {
            g.CurrentUrl = QString("https://run%1.example/").arg(i);
            m_main->NewBtnAction(true);
            visited << g.WindowIndex;
        }
        m_main->webForm()->RunNavigating = false;
        QCOMPARE(visited, (QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 1}));
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://run8.example/"));
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void loopingTimedBrowseAtTheLimitAsksForItsPositionResetAndLeavesSeveralWindows()
    {
        openEight();
        g.RunListRunning = true;
        g.RunListMulti = true;
        g.RunListLoop = true;
        m_main->verbs()->run().RunPos = 5;
        m_main->webForm()->RunNavigating = true;
        m_main->NewBtnAction(true);
        m_main->webForm()->RunNavigating = false;
        QCOMPARE(m_main->verbs()->run().RunPos, 0);
        QVERIFY(!g.RunListMulti);
    }
    void oneWindowRunUsesItsOwnSlot()
    {
        open("https://one.example/");
        open("https://two.example/");
        g.RunListRunning = true;
        g.RunListMulti = false;
        g.NextRunItem = 1;
        open("https://run.example/", false);
        QCOMPARE(g.WindowIndex, 1);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://run.example/"));
    }
    void loadGoOutsideTheSlotsOnlyStoresTheAddress()
    {
        g.CurrentUrl = "https://zero.example/";
        pool()->Form_LoadGo(9);
        QCOMPARE(g.WindowUrl[9], QStringLiteral("https://zero.example/"));
        QVERIFY(m_created.isEmpty());
        pool()->Form_LoadGo(11); // beyond the address array: nothing happens
        QVERIFY(m_created.isEmpty());
    }
    void newButtonOpensTheNewExplorerUrl()
    {
        g.NewWindowUrl = "https://new.example/";
        QTest::mouseClick(surf()->NewBtn(), Qt::LeftButton);
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://new.example/"});
        QVERIFY(!surf()->Frame8()->isVisibleTo(m_main.get()));
        g.NewWindowUrl = "   ";
        g.CurrentUrl = "https://kept.example/";
        QTest::mouseClick(surf()->NewBtn(), Qt::LeftButton);
        QCOMPARE(m_created[1]->navigations, QStringList{"https://kept.example/"});
    }
    void toggleButtonSwitchesBetweenNewAndCurrentWindow()
    {
        QVERIFY(g.NewWindowMode);
        QTest::mouseClick(surf()->ToggleBtn(), Qt::LeftButton);
        QVERIFY(surf()->ToggleBtn()->value());
        QVERIFY(!g.NewWindowMode);
        QCOMPARE(surf()->ToggleBtn()->toolTip(), QStringLiteral("Use Current Internet Explorer Window"));
        QTest::mouseClick(surf()->ToggleBtn(), Qt::LeftButton);
        QVERIFY(g.NewWindowMode);
        QCOMPARE(surf()->ToggleBtn()->toolTip(), QStringLiteral("Start a New Internet Explorer Window"));
    }
    void rowsAreStackedFromTheTop()
    {
        m_main->resize(twipsToPixels(4700), twipsToPixels(8100));
        const int h = twipsToPixels(750);
        QCOMPARE(surf()->Button(0)->geometry().top(), twipsToPixels(200));
        QCOMPARE(surf()->Button(0)->geometry().left(), twipsToPixels(165));
        const int formWidth = pixelsToTwips(m_main->width());
        QCOMPARE(surf()->Button(0)->width(), twipsToPixels(formWidth - 500 - 750));
        QCOMPARE(surf()->Button(0)->height(), h);
        for (int row = 1; row < 8; ++row)
            QCOMPARE(surf()->Button(row)->y(), twipsToPixels(200 + row * 750));
        QCOMPARE(surf()->AddFavBtn(0)->x(), surf()->Button(0)->geometry().right() + 1);
        QCOMPARE(surf()->AddListBtn(0)->y(), surf()->AddFavBtn(0)->geometry().bottom() + 1);
        QTest::mouseClick(surf()->QuikViewBtn(), Qt::LeftButton);
        QCOMPARE(surf()->Button(3)->height(), twipsToPixels(500));
        QCOMPARE(surf()->Button(3)->y(), twipsToPixels(200 + 3 * 500));
        QCOMPARE(surf()->Button(0)->width(), twipsToPixels(formWidth - 500 - 500));
    }
    void normalRowsShowTheAddButtonsOfTheCountedRows()
    {
        open("https://one.example/");
        open("https://two.example/");
        QTest::mouseClick(surf()->QuikViewBtn(), Qt::LeftButton); // small rows: list buttons hidden
        QVERIFY(!surf()->AddListBtn(0)->isVisibleTo(m_main.get()));
        QTest::mouseClick(surf()->QuikViewBtn(), Qt::LeftButton);
        QVERIFY(surf()->AddListBtn(0)->isVisibleTo(m_main.get()));
        QVERIFY(surf()->AddListBtn(1)->isVisibleTo(m_main.get()));
        QVERIFY(!surf()->AddListBtn(2)->isVisibleTo(m_main.get()));
    }
    void addButtonsHandTheRowsPageToTheDragAndBringTheirTab()
    {
        ScriptedBrowserWindow* w = open("https://drag.example/");
        w->load("https://drag.example/", "Drag Me");
        QStringList dragged;
        ControlDrag::setTestHook([&](QWidget* source, const QMimeData& data) {
            dragged << source->objectName() + ":" + ControlDrag::sourceTag(&data);
        });
        QTest::mousePress(surf()->AddFavBtn(0), Qt::LeftButton);
        QCOMPARE(dragged, QStringList{"AddFavBtn_0:AddBtn"});
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://drag.example/"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("Drag Me"));
        QCOMPARE(surf()->DragRowIndex, 0);
        QVERIFY(surf()->RowDragToFavorites);
        QCOMPARE(m_main->TabStrip1()->tabText(m_main->TabStrip1()->currentIndex()),
                 QStringLiteral("Favorites"));
        QTest::mousePress(surf()->AddListBtn(0), Qt::LeftButton);
        QCOMPARE(dragged.last(), QStringLiteral("AddListBtn_0:AddListBtn"));
        QVERIFY(surf()->RowDragToList);
        QCOMPARE(m_main->TabStrip1()->tabText(m_main->TabStrip1()->currentIndex()), QStringLiteral("Lists"));
    }
    void calendarButtonShowsTheCalendarWithTheTime()
    {
        m_main->show();
        QVERIFY(!surf()->Frame7()->isVisible());
        QTest::mouseClick(surf()->CalendarBtn(), Qt::LeftButton);
        QVERIFY(surf()->Frame7()->isVisible());
        QVERIFY(QRegularExpression("^ \\d\\d:\\d\\d:\\d\\d $").match(surf()->Frame7()->title()).hasMatch());
        QTest::mouseClick(surf()->CalendarBtn(), Qt::LeftButton);
        QVERIFY(!surf()->Frame7()->isVisible());
    }
    void newWindowRequestedByAPageOpensThroughTheNewButtonsPath()
    {
        ScriptedBrowserWindow* w = open("https://opener.example/");
        emit w->newWindowRequested("https://popup.example/", true);
        QCOMPARE(m_created.size(), 2);
        QCOMPARE(pool()->ie(2), m_created[1]);
        QCOMPARE(m_created[1]->navigations, QStringList{"https://popup.example/"});
    }
    void aStormOfPopupsWithEightWindowsOpenAsksOnce()
    {
        ManualClock clock(QDateTime(QDate(2026, 5, 1), QTime(12, 0)));
        Clock::setInstance(&clock);
        openEight();
        // The question is on screen while the page goes on asking: those requests are dropped.
        StormBackend backend;
        backend.window = window(3);
        DialogService::setBackend(&backend);
        for (int i = 0; i < 50; ++i) {
            emit window(3)->newWindowRequested(QString("https://popup%1.example/").arg(i), false);
            clock.advanceSeconds(0.01);
        }
        DialogService::setBackend(nullptr);
        QCOMPARE(backend.questions, 1);
        QCOMPARE(DialogService::shownTexts(), QStringList{kMaximumQuestion});
        QCOMPARE(m_created.size(), 8);
        QCOMPARE(g.WindowCount, 8);

        // After a pause the page may ask again: a new burst, a new question.
        clock.advanceSeconds(2);
        DialogService::setNextAnswer(DialogService::Answer::No);
        emit window(3)->newWindowRequested("https://later.example/", false);
        QCOMPARE(DialogService::shownTexts().size(), 2);
        // The user's own clicks always reach the New button's path, in a burst or not.
        DialogService::setNextAnswer(DialogService::Answer::No);
        emit window(3)->newWindowRequested("https://clicked.example/", true);
        QCOMPARE(DialogService::shownTexts().size(), 3);
        Clock::setInstance(nullptr);
    }
    void popupsOfOnePageFillTheFreeSlotsThenAskOnce()
    {
        ManualClock clock(QDateTime(QDate(2026, 5, 1), QTime(12, 0)));
        Clock::setInstance(&clock);
        ScriptedBrowserWindow* opener = open("https://opener.example/");
        DialogService::setNextAnswer(DialogService::Answer::No);
        for (int i = 0; i < 50; ++i)
            emit opener->newWindowRequested(QString("https://popup%1.example/").arg(i), false);
        QCOMPARE(m_created.size(), 8);
        QCOMPARE(window(8)->navigations, QStringList{"https://popup6.example/"});
        QCOMPARE(DialogService::shownTexts(), QStringList{kMaximumQuestion});
        Clock::setInstance(nullptr);
    }
    void titlesAndAddressesOfAPageAreCutToTheirBound()
    {
        ScriptedBrowserWindow* w = open("https://huge.example/");
        const QString hugeTitle(5'000'000, u't');
        const QString hugeUrl = "https://huge.example/?" + QString(3'000'000, u'q');
        emit w->beforeNavigate(hugeUrl);
        QCOMPARE(surf()->Button(0)->text().size(), kMaxPageTextLength);
        emit w->titleChange(hugeTitle);
        QCOMPARE(surf()->Button(0)->text(), hugeTitle.left(kMaxPageTextLength));
        w->title = hugeTitle;
        QSignalSpy completed(pool(), &WebForm1::documentCompleted);
        emit w->navigateComplete(hugeUrl);
        QCOMPARE(g.CurrentUrl, hugeUrl.left(kMaxPageTextLength));
        emit w->documentComplete(hugeUrl);
        QCOMPARE(completed.size(), 1);
        QCOMPARE(g.CurrentTitle, hugeTitle.left(kMaxPageTextLength));
        QCOMPARE(g.CurrentUrl, hugeUrl.left(kMaxPageTextLength));
        QCOMPARE(surf()->Button(0)->tag(), hugeUrl.left(kMaxPageTextLength));
        QCOMPARE(surf()->Button(0)->toolTip(), hugeUrl.left(kMaxPageTextLength));
        QCOMPARE(surf()->Button(0)->text(), hugeTitle.left(kMaxPageTextLength));
        // A title of normal length is taken as it is; a pair of surrogates is never split.
        const QString emoji = QString(kMaxPageTextLength - 1, u'a') + QString::fromUtf8("\xF0\x9F\x98\x80");
        emit w->titleChange(emoji);
        QCOMPARE(surf()->Button(0)->text(), QString(kMaxPageTextLength - 1, u'a'));
        emit w->titleChange("Normal Title");
        QCOMPARE(surf()->Button(0)->text(), QStringLiteral("Normal Title"));
        // A page asking for a window with an enormous address hands over no more than the bound.
        DialogService::setNextAnswer(DialogService::Answer::No);
        emit w->newWindowRequested(hugeUrl, true);
        QCOMPARE(m_created.last()->navigations, QStringList{hugeUrl.left(kMaxPageTextLength)});
    }
};

VANTREL_GUI_TEST_MAIN(TestWindowPool)
#include "tst_windowpool.moc"
