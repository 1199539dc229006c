// The run dialog's Previous, Pause/Resume and Next: they act on the run going on, through the
// verbs, and say what a click does.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "widgets/GradientButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTest>

#include <memory>

class TestRunSteps : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    RunList1* dialog() { return m_main->listsPanel()->runDialog(); }
    QString shown() { return m_created.isEmpty() ? QString() : m_created.last()->navigations.last(); }
    void tickFor(double seconds)
    {
        for (double t = 0; t < seconds; t += 0.6) {
            m_main->Timer1_Timer();
            m_clock->advanceSeconds(0.6);
        }
    }
    // Lets the dialog follow the run's state, which is told once the event loop turns.
    void settle() { QCoreApplication::processEvents(); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 4), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "Walls[#@!][#@!]\r\nWalls[#@!]One[#@!]https://one.example/\r\n"
                         "Walls[#@!]Two[#@!]https://two.example/\r\nWalls[#@!]Three[#@!]https://three.example/\r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_created.clear();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        DialogService::clearShown();
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        QVERIFY(dialog());
    }
    void cleanup()
    {
        m_main.reset();
        Clock::setInstance(nullptr);
        m_app.reset();
    }

    void theStepButtonsWaitForARun()
    {
        for (GradientButton* b : {dialog()->PreviousBtn(), dialog()->PauseBtn(), dialog()->NextBtn()}) {
            QVERIFY(!b->isEnabled());
            QVERIFY(!b->toolTip().isEmpty());
        }
        QCOMPARE(dialog()->PauseBtn()->text(), QStringLiteral("Pause"));
    }

    void nextPauseResumeAndPreviousActOnTheRun()
    {
        dialog()->CMBLIST()->setCurrentIndex(0);
        dialog()->CMBTIME()->setCurrentIndex(0); // 30 seconds
        QTest::mouseClick(dialog()->GoBtn(), Qt::LeftButton);
        tickFor(1); // the first page
        settle();
        QCOMPARE(shown(), QStringLiteral("https://one.example/"));
        QVERIFY(dialog()->NextBtn()->isEnabled());

        QTest::mouseClick(dialog()->NextBtn(), Qt::LeftButton);
        QCOMPARE(shown(), QStringLiteral("https://two.example/"));

        QTest::mouseClick(dialog()->PauseBtn(), Qt::LeftButton);
        QCOMPARE(dialog()->PauseBtn()->text(), QStringLiteral("Resume"));
        QVERIFY(m_main->verbs()->state().run.paused);
        tickFor(120);
        QCOMPARE(shown(), QStringLiteral("https://two.example/")); // held

        QTest::mouseClick(dialog()->PauseBtn(), Qt::LeftButton);
        QCOMPARE(dialog()->PauseBtn()->text(), QStringLiteral("Pause"));
        QTest::mouseClick(dialog()->PreviousBtn(), Qt::LeftButton);
        QCOMPARE(shown(), QStringLiteral("https://one.example/"));

        // Closing the dialog ends the run: the buttons wait again.
        dialog()->close();
        settle();
        QVERIFY(!dialog()->NextBtn()->isEnabled());
    }
};

QTEST_MAIN(TestRunSteps)
#include "tst_runsteps.moc"
