#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "watch/EventLog.h"
#include "session/SessionFile.h"
#include "settings/VantrelConf.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/Startup.h"
#include "core/ColorsFile.h"
#include "core/ListFile.h"
#include "verbs/ListRun.h"
#include "verbs/Verbs.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "widgets/GradientButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTest>

// A start after the program ended without its unload: the question, the windows back in their
// slots, the run going on; and the starts that must stay as they always were.
class TestSessionRestore : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    static Session crashed()
    {
        Session s;
        s.windows = {{2, "https://two.example/", "Two"},
                     {5, "https://five.example/", "Five"},
                     {6, "https://six.example/", "Six"},
                     {8, "https://eight.example/", "Eight"}};
        s.currentSlot = 5;
        s.newWindowMode = true;
        s.run = SessionRun{"Walls", 60, true, true, false, 2, {}};
        return s;
    }
    void prepare(const Session& last, bool startUpPage = true)
    {
        QVERIFY(SessionFile::write(m_app->file("Session.INI"), last));
        // With the start-up page on, a reopened session takes its place.
        QVERIFY(writeAll(m_app->file("Options.INI"),
                         QByteArray(" 7100  250  8100  4700  1  0 \r\n 0  ") + (startUpPage ? "1" : "0") +
                             "  0  0  1 \r\nhttps://start.example/\r\nhttps://new.example/\r\n"));
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "Walls[#@!] [#@!] \r\nWalls[#@!]w1[#@!]https://w1.example/\r\n"
                         "Walls[#@!]w2[#@!]https://w2.example/\r\nWalls[#@!]w3[#@!]https://w3.example/\r\n"
                         "Walls[#@!]w4[#@!]https://w4.example/\r\n"));
        QVERIFY(LoadListFile(m_app->file("DefaultList.NLS")));
        QVERIFY(SaveColors()); // no first-start notice about the colours before the question
    }
    void start(std::optional<DialogService::Answer> answer)
    {
        DialogService::clearShown();
        if (answer)
            DialogService::setNextAnswer(*answer);
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
    }
    ScriptedBrowserWindow* window(int slot)
    {
        return qobject_cast<ScriptedBrowserWindow*>(m_main->webForm()->ie(slot));
    }
    QStringList openSlots()
    {
        QStringList open;
        for (int slot = 1; slot <= kWindowSlots; ++slot)
            if (!g.WindowUrl[slot].isEmpty())
                open << QString("%1 %2").arg(slot).arg(g.WindowUrl[slot]);
        return open;
    }
    static QStringList sessionQuestions()
    {
        return DialogService::shownTexts().filter(QStringLiteral("did not close normally"));
    }
    QString log() { return QString::fromUtf8(readAll(EventLog::path())); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 1), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
        m_created.clear();
        DialogService::reset();
    }
    void cleanup()
    {
        if (m_main)
            m_main->Form_Unload();
        m_main.reset();
        Clock::setInstance(nullptr);
        DialogService::reset();
        m_app.reset();
    }

    void bothRunsComeBackEachInItsWindowsWithItsOwnTime()
    {
        Session last = crashed();
        last.otherRuns = {SessionRun{"Walls", 30, true, true, false, 1, {5, 6}}};
        last.run = SessionRun{"Walls", 60, true, false, false, 2, {}};
        prepare(last);
        start(DialogService::Answer::Yes);
        QVERIFY(g.RunListRunning);
        const QList<RunState> others = m_main->verbs()->otherRuns();
        QCOMPARE(others.size(), 1);
        QCOMPARE(others[0].windows, (QList<int>{5, 6}));
        QCOMPARE(others[0].next, 1);
        QVERIFY(log().contains("the run of Walls in other windows going on at page 2"));
        // The run in other windows goes on in its own windows at its own pace; the run dialog's in
        // a window of its own.
        m_main->Timer1_Timer();
        m_clock->advanceSeconds(31);
        m_main->Timer1_Timer();
        QCOMPARE(window(6)->navigations.last(), QStringLiteral("https://w2.example/"));
        m_main->Timer1_Timer();
        m_clock->advanceSeconds(31);
        m_main->Timer1_Timer();
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://w3.example/"));
        QCOMPARE(window(2)->navigations.size(), 1); // the run dialog's run waits its minute
        // The session written now keeps both, for the next crash.
        m_clock->advanceSeconds(2);
        m_main->Timer1_Timer();
        const std::optional<Session> kept = SessionFile::read(m_app->file("Session.INI"));
        QVERIFY(kept && kept->run);
        QCOMPARE(kept->otherRuns.size(), 1);
        QCOMPARE(kept->otherRuns[0].windows, (QList<int>{5, 6}));
    }

    void yesReopensEachWindowInItsSlotAndTheRunGoesOn()
    {
        prepare(crashed());
        start(DialogService::Answer::Yes);
        QCOMPARE(sessionQuestions(),
                 QStringList{"Vantrel did not close normally. Reopen its 4 browser windows and go on running "
                             "the list Walls?"});
        QCOMPARE(openSlots(), (QStringList{"2 https://two.example/", "5 https://five.example/",
                                           "6 https://six.example/", "8 https://eight.example/"}));
        QCOMPARE(g.WindowCount, 4);
        QCOMPARE(g.WindowIndex, 5); // the current slot, opened last: in front
        QCOMPARE(m_created.size(), 4);
        QCOMPARE(window(8)->navigations, QStringList{"https://eight.example/"});
        for (int slot : {2, 5, 6, 8})
            QVERIFY(m_main->surf()->Button(slot - 1)->isVisible());
        for (int slot : {1, 3, 4, 7})
            QVERIFY(!m_main->surf()->Button(slot - 1)->isVisible());
        // The start-up page is not opened on top of the session.
        for (ScriptedBrowserWindow* w : m_created)
            QVERIFY(!w->navigations.contains("https://start.example/"));

        // The run goes on from its dialog, with its choices, at its next page.
        RunList1* dialog = m_main->listsPanel()->runDialog();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->CMBLIST()->currentText(), QStringLiteral("Walls"));
        QCOMPARE(dialog->CMBTIME()->currentText(), QStringLiteral("1 minute"));
        QVERIFY(dialog->CHKPAGE()->isChecked());
        QVERIFY(dialog->CHKLOOP()->isChecked());
        QVERIFY(!dialog->CHKKEEP()->isChecked());
        QVERIFY(g.RunListRunning && g.RunListLoop && g.RunListMulti);
        QCOMPARE(g.RunInterval, 60);
        QCOMPARE(m_main->listsPanel()->run().RunPos, 2);
        m_main->Timer1_Timer();
        m_clock->advanceSeconds(61);
        m_main->Timer1_Timer();
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://w3.example/"));
        QCOMPARE(m_created.size(), 5);
        QCOMPARE(m_created.last()->navigations, QStringList{"https://w3.example/"});
        QCOMPARE(g.WindowIndex, 1); // the lowest free slot, as a run opens it
        QVERIFY(log().contains("session of the last run reopened: 4 windows, the run of Walls going on at page 3"));
    }
    void theSessionIsKeptAgainFromTheFirstTick()
    {
        prepare(crashed());
        start(DialogService::Answer::Yes);
        // Until the first tick the file is the one the start began from.
        const QByteArray before = readAll(m_app->file("Session.INI"));
        QVERIFY(before.contains("Title=Two\n"));
        m_main->Timer1_Timer();
        // The rows show the addresses until the pages tell their titles: written anew.
        QVERIFY(!readAll(m_app->file("Session.INI")).contains("Title=Two\n"));
        const std::optional<Session> now = SessionFile::read(m_app->file("Session.INI"));
        QVERIFY(now);
        QVERIFY(!now->endedNormally);
        QCOMPARE(now->windows.size(), 4);
        QCOMPARE(now->currentSlot, 5);
        QVERIFY(now->run);
        QCOMPARE(now->run->position, 2);
        // A normal end keeps the windows as they were before they closed.
        m_main->Form_Unload();
        const std::optional<Session> ended = SessionFile::read(m_app->file("Session.INI"));
        QVERIFY(ended->endedNormally);
        QCOMPARE(ended->windows.size(), 4);
    }
    void noOpensNothingMoreThanANormalStart()
    {
        prepare(crashed());
        start(DialogService::Answer::No);
        QCOMPARE(sessionQuestions().size(), 1);
        QCOMPARE(openSlots(), QStringList{"1 https://start.example/"});
        QVERIFY(!g.RunListRunning);
        QVERIFY(!m_main->listsPanel()->runDialog());
        // What was not reopened is gone: the next start asks nothing.
        m_main->Form_Unload();
        m_main.reset();
        m_created.clear();
        start(std::nullopt);
        QVERIFY(sessionQuestions().isEmpty());
    }
    void afterANormalEndNothingIsAsked()
    {
        Session ended = crashed();
        ended.endedNormally = true;
        prepare(ended);
        start(std::nullopt);
        QVERIFY(sessionQuestions().isEmpty());
        QCOMPARE(openSlots(), QStringList{"1 https://start.example/"});
    }
    void withoutAskingWhenTheSettingSaysSo()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kReopenAfterCrash, 1));
        prepare(crashed());
        start(std::nullopt);
        QVERIFY(sessionQuestions().isEmpty());
        QCOMPARE(g.WindowCount, 4);
        QVERIFY(g.RunListRunning);
    }
    void alwaysReopenBringsTheWindowsBackAfterANormalEnd()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kAlwaysReopen, 1));
        Session ended = crashed();
        ended.endedNormally = true;
        prepare(ended);
        start(std::nullopt);
        QVERIFY(sessionQuestions().isEmpty());
        QCOMPARE(g.WindowCount, 4);
        QVERIFY(!g.RunListRunning); // the unload had stopped it
        for (ScriptedBrowserWindow* w : m_created)
            QVERIFY(!w->navigations.contains("https://start.example/"));
    }
    void aSessionThatCannotBeTrustedIsIgnoredAndSaid()
    {
        prepare(crashed());
        QByteArray bytes = readAll(m_app->file("Session.INI"));
        QVERIFY(writeAll(m_app->file("Session.INI"), bytes.replace("[Window8]", "[Window12]")));
        start(std::nullopt);
        QVERIFY(sessionQuestions().isEmpty());
        QCOMPARE(openSlots(), QStringList{"1 https://start.example/"});
        QVERIFY(log().contains("session of the last run ignored: it names a slot outside 1 to 8"));
    }
    void aRunWhoseListIsGoneReopensTheWindowsOnly()
    {
        Session last = crashed();
        last.run->list = "Gone";
        prepare(last);
        start(DialogService::Answer::Yes);
        QCOMPARE(g.WindowCount, 4);
        QVERIFY(!g.RunListRunning);
        QVERIFY(log().contains("the run of Gone not (the list or its interval is gone)"));
    }
    void theNewWindowModeComesBack()
    {
        Session last = crashed();
        last.newWindowMode = false;
        last.run.reset();
        prepare(last, false);
        start(DialogService::Answer::Yes);
        QVERIFY(!g.NewWindowMode);
        QVERIFY(m_main->surf()->ToggleBtn()->value());
        QCOMPARE(m_main->surf()->ToggleBtn()->toolTip(), QStringLiteral("Use Current Internet Explorer Window"));
    }
    void aLeftoverOfACutSaveIsRemoved()
    {
        prepare(crashed());
        QVERIFY(writeAll(m_app->file(".Session.INI.k3x9.tmp"), "[Session]\nVers"));
        TidyProgramFolder(); // as the program's start does, before the main window is made
        start(DialogService::Answer::No);
        QVERIFY(!QFile::exists(m_app->file(".Session.INI.k3x9.tmp")));
    }
};

VANTREL_GUI_TEST_MAIN(TestSessionRestore)
#include "tst_sessionrestore.moc"
