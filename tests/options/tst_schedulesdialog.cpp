// The Schedules dialog, opened from More Options in the main window and driven through its
// controls: a schedule made, its week shown, kept in Schedules.conf and handed to the scheduler;
// what cannot be kept is said and nothing is written; Cancel changes nothing.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/ListFile.h"
#include "mainwindow/Vantrel1.h"
#include "options/OptionsPanel.h"
#include "options/ScheduleWeek.h"
#include "options/SchedulesDialog.h"
#include "schedule/Scheduler.h"
#include "settings/SchedulesFile.h"
#include "verbs/WebForm1.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

class TestSchedulesDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    SchedulesDialog* dialog() { return m_main->schedulesDialog(); }
    template <typename T> T* control(const char* name)
    {
        return dialog() ? dialog()->findChild<T*>(QString::fromLatin1(name)) : nullptr;
    }
    void open()
    {
        m_main->TabStrip1()->setCurrentIndex(4);
        QTest::mouseClick(m_main->findChild<QWidget*>("MoreOptionsBtn"), Qt::LeftButton);
        QWidget* more = m_main->findChild<QWidget*>("MoreOptions");
        QVERIFY(more && more->isVisible());
        QTest::mouseClick(more->findChild<QPushButton*>("SchedulesBtn"), Qt::LeftButton);
        QVERIFY(dialog() && dialog()->isVisible());
    }
    void fill(const QString& name, const QString& rules, const QString& leftOut = QString())
    {
        control<QLineEdit>("ScheduleName")->setText(name);
        control<QPlainTextEdit>("ScheduleRules")->setPlainText(rules);
        control<QPlainTextEdit>("ScheduleLeftOut")->setPlainText(leftOut);
    }
    QString schedulesFile() const { return m_app->file(QString::fromLatin1(SchedulesFile::kFileName)); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "Shop[#@!] [#@!] \r\nShop[#@!]S1[#@!]https://s1.example/\r\n"
                         "Night[#@!] [#@!] \r\nNight[#@!]N1[#@!]https://n1.example/\r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        DialogService::clearShown();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
    }

    void aScheduleMadeInTheDialogIsKeptAndRuns()
    {
        open();
        QVERIFY(!control<QWidget>("ScheduleName")->isEnabled()); // nothing to edit yet
        QTest::mouseClick(control<QPushButton>("AddScheduleBtn"), Qt::LeftButton);
        QCOMPARE(dialog()->schedulesBox()->count(), 1);
        fill("Opening", "Mon-Fri 08:00-18:00\nSat 22:00-02:00", "2026-12-25");
        QCOMPARE(dialog()->schedulesBox()->item(0)->text(), QStringLiteral("Opening"));
        control<QComboBox>("ScheduleFavoriteList")->setCurrentText("Night");
        control<QSpinBox>("ScheduleInterval")->setValue(45);
        control<QCheckBox>("ScheduleWindow_3")->setChecked(true);
        control<QComboBox>("ScheduleStart")->setCurrentIndex(1);
        // The week shows what the rules make of it, the night past midnight included.
        ScheduleWeek* week = control<ScheduleWeek>("ScheduleWeek");
        QVERIFY(week->filled(1, 8 * 4));
        QVERIFY(!week->filled(1, 18 * 4));
        QVERIFY(week->filled(6, 23 * 4));
        QVERIFY(week->filled(7, 1 * 4));
        QVERIFY(!week->filled(7, 2 * 4));
        QVERIFY(week->accessibleDescription().startsWith("It runs this week: Mon 10 h"));
        // A rule of a few minutes fills its quarter hour.
        control<QPlainTextEdit>("ScheduleRules")->setPlainText("Wed 18:26-18:27");
        QVERIFY(week->filled(3, 18 * 4 + 1));
        QVERIFY(!week->filled(3, 18 * 4 + 2));
        QCOMPARE(week->accessibleDescription(), QStringLiteral("It runs this week: Wed 1 min"));
        control<QPlainTextEdit>("ScheduleRules")->setPlainText("Mon-Fri 08:00-18:00\nSat 22:00-02:00");
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QVERIFY(DialogService::shownTexts().isEmpty());
        QTRY_VERIFY(!dialog()); // closed, and gone: the next one shows the lists of its day
        const QList<Schedule> kept = SchedulesFile::read(schedulesFile());
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept[0].name, QStringLiteral("Opening"));
        QCOMPARE(kept[0].list, QStringLiteral("Night"));
        QCOMPARE(kept[0].intervalSeconds, 45);
        QCOMPARE(kept[0].windows, QList<int>{3});
        QCOMPARE(kept[0].start, Schedule::Start::WhereItStoppedToday);
        QCOMPARE(kept[0].leftOut, QList<QDate>{QDate(2026, 12, 25)});
        QCOMPARE(ScheduleRules::linesOf(kept[0].rules), QStringLiteral("Mon-Fri 08:00-18:00\nSat 22:00-02:00"));
        QCOMPARE(m_main->scheduler()->schedules(), kept);
    }
    void whatCannotBeKeptIsSaidAndNothingIsWritten()
    {
        open();
        QTest::mouseClick(control<QPushButton>("AddScheduleBtn"), Qt::LeftButton);
        fill("Opening", "Mon-Fri 08:00-18:00\nsometimes");
        QLabel* problems = control<QLabel>("ScheduleProblems");
        QVERIFY(problems->isVisibleTo(dialog()));
        QCOMPARE(problems->text(), QStringLiteral("Line 2 is no rule: \"sometimes\" (write it as Mon-Fri 08:00-18:00)"));
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"The schedule \"Opening\": Line 2 is no rule: \"sometimes\" (write it as Mon-Fri 08:00-18:00)"});
        QVERIFY(dialog() && dialog()->isVisible());
        QVERIFY(!QFile::exists(schedulesFile()));
        // Two of the same name.
        fill("Opening", "Mon-Fri 08:00-18:00");
        QVERIFY(!problems->isVisibleTo(dialog()));
        QTest::mouseClick(control<QPushButton>("AddScheduleBtn"), Qt::LeftButton);
        fill("opening", "Sat 10:00-12:00");
        DialogService::clearShown();
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Two schedules are named \"opening\"."});
        QVERIFY(!QFile::exists(schedulesFile()));
        // No hours at all.
        fill("Saturday", "");
        DialogService::clearShown();
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"The schedule \"Saturday\" has no hours."});
    }
    void cancelAndRemoveChangeOnlyWhatOKKeeps()
    {
        Schedule kept;
        kept.name = "Night";
        kept.list = "Night";
        kept.rules << *ScheduleRule::fromText("Daily 22:00-06:00");
        QCOMPARE(SchedulesFile::write(schedulesFile(), {kept}), RunError::None);
        m_main->scheduler()->setSchedules(SchedulesFile::read(schedulesFile()));
        open();
        QCOMPARE(dialog()->schedulesBox()->count(), 1);
        QCOMPARE(control<QLineEdit>("ScheduleName")->text(), QStringLiteral("Night"));
        fill("Changed", "Daily 01:00-02:00");
        QTest::mouseClick(control<QPushButton>("CancelBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog()); // closed, and gone: the next one shows the lists of its day
        QCOMPARE(SchedulesFile::read(schedulesFile()), QList<Schedule>{kept});
        open();
        QCOMPARE(control<QLineEdit>("ScheduleName")->text(), QStringLiteral("Night")); // as it was
        QTest::mouseClick(control<QPushButton>("RemoveScheduleBtn"), Qt::LeftButton);
        QCOMPARE(dialog()->schedulesBox()->count(), 0);
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QVERIFY(SchedulesFile::read(schedulesFile()).isEmpty());
        QVERIFY(m_main->scheduler()->schedules().isEmpty());
    }
};

QTEST_MAIN(TestSchedulesDialog)
#include "tst_schedulesdialog.moc"
