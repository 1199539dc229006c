// The Screens dialog, opened from More Options in the main window and driven through its controls:
// the monitors shown as the system has them, a window fixed to one, full screen or at a rectangle,
// kept in Screens.conf and its window moved at once; a monitor that is missing now is marked.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "mainwindow/Vantrel1.h"
#include "options/ScreensDialog.h"
#include "screens/ScreenPlacer.h"
#include "settings/ScreensFile.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTreeWidget>

class TestScreensDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;
    QList<Monitor> m_monitors;

    ScreensDialog* dialog() { return m_main->screensDialog(); }
    template <typename T> T* control(const QString& name) { return dialog() ? dialog()->findChild<T*>(name) : nullptr; }
    void open()
    {
        m_main->TabStrip1()->setCurrentIndex(4);
        QTest::mouseClick(m_main->findChild<QWidget*>("MoreOptionsBtn"), Qt::LeftButton);
        QWidget* more = m_main->findChild<QWidget*>("MoreOptions");
        QVERIFY(more && more->isVisible());
        QTest::mouseClick(more->findChild<QPushButton*>("ScreensBtn"), Qt::LeftButton);
        QVERIFY(dialog() && dialog()->isVisible());
    }
    ScreenPlacer* placer() { return m_main->webForm()->placer(); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_monitors = {{"HDMI-1", "Dell Inc.", "DELL U2720Q", "CN0A1", QRect(0, 0, 1920, 1080), true},
                      {"DP-2", "Iiyama", "PL2792Q", "", QRect(1920, 0, 2560, 1440), false}};
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        placer()->setMonitorsForTest([this] { return m_monitors; });
        m_main->Form_Load();
        m_main->show();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
    }

    void theMonitorsAreShownAsTheSystemHasThem()
    {
        open();
        auto* list = control<QTreeWidget>("MonitorsList");
        QCOMPARE(list->topLevelItemCount(), 2);
        QCOMPARE(list->topLevelItem(0)->text(0), QStringLiteral("Dell Inc. DELL U2720Q (HDMI-1)"));
        QCOMPARE(list->topLevelItem(0)->text(2), QStringLiteral("primary"));
        QCOMPARE(list->topLevelItem(1)->text(1), QStringLiteral("2560 x 1440 at 1920, 0"));
        QComboBox* monitor = dialog()->monitorBox(3);
        QCOMPARE(monitor->count(), 3);
        QCOMPARE(monitor->itemText(0), QStringLiteral("Not fixed"));
        QCOMPARE(monitor->itemText(2), QStringLiteral("Iiyama PL2792Q (DP-2)"));
        // Not fixed: nothing else of the row to choose.
        QVERIFY(!control<QComboBox>("PlaceCmb3")->isEnabled());
        QVERIFY(!control<QSpinBox>("RectX3")->isEnabled());
        // The note of Wayland shows only there.
        QCOMPARE(control<QLabel>("WaylandNote")->isVisible(), QGuiApplication::platformName().startsWith("wayland"));
    }
    void aWindowFixedInTheDialogIsKeptAndMovedAtOnce()
    {
        QVERIFY(m_main->verbs()->openPage("https://wall.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        open();
        dialog()->monitorBox(1)->setCurrentIndex(2);
        QVERIFY(control<QComboBox>("PlaceCmb1")->isEnabled());
        QVERIFY(!control<QSpinBox>("RectX1")->isEnabled()); // full screen first
        control<QComboBox>("PlaceCmb1")->setCurrentIndex(1);
        QVERIFY(control<QSpinBox>("RectX1")->isEnabled());
        control<QSpinBox>("RectX1")->setValue(100);
        control<QSpinBox>("RectY1")->setValue(50);
        control<QSpinBox>("RectW1")->setValue(800);
        control<QSpinBox>("RectH1")->setValue(600);
        dialog()->monitorBox(4)->setCurrentIndex(1);
        control<QComboBox>("MissingCmb4")->setCurrentIndex(1);
        QTest::mouseClick(dialog()->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        const QString text = QString::fromUtf8(readAll(ScreensFile::path()));
        QVERIFY(text.contains("[Window1]\nifMissing=primary\nmanufacturer=Iiyama\nmodel=PL2792Q\nmonitor=DP-2\nplace=100 50 800 600\n"));
        QVERIFY(text.contains("[Window4]\nifMissing=hidden\nmanufacturer=Dell Inc.\nmodel=DELL U2720Q\nmonitor=HDMI-1\nplace=full-screen\nserial=CN0A1\n"));
        QCOMPARE(placer()->places().size(), 2);
        // The open window stands on its monitor at once.
        QCOMPARE(m_created[0]->place().mode, WindowPlace::Mode::Rect);
        QCOMPARE(m_created[0]->place().rect, QRect(2020, 50, 800, 600));
    }
    void aMonitorThatIsMissingNowIsMarked()
    {
        SlotPlace gone;
        gone.slot = 2;
        gone.monitor = {"DP-7", "LG", "27UL500", ""};
        QVERIFY(ScreensFile::write(ScreensFile::path(), {gone}) == RunError::None);
        placer()->setPlaces(ScreensFile::read(ScreensFile::path()));
        open();
        QCOMPARE(dialog()->monitorBox(2)->currentText(), QStringLiteral("LG 27UL500 (DP-7) (missing now)"));
        auto* list = control<QTreeWidget>("MonitorsList");
        QCOMPARE(list->topLevelItemCount(), 3);
        QCOMPARE(list->topLevelItem(2)->text(1), QStringLiteral("missing now"));
        // Kept as it is when OK is pressed: the monitor may come back.
        QVERIFY(dialog()->save());
        QCOMPARE(ScreensFile::read(ScreensFile::path()), QList<SlotPlace>{gone});
    }
    void whatAWindowShowsWithNothingScheduledIsChosenAndChecked()
    {
        open();
        QLineEdit* page = control<QLineEdit>("IdlePage3");
        QVERIFY(!page->isEnabled());
        control<QComboBox>("IdleCmb3")->setCurrentIndex(2);
        QVERIFY(page->isEnabled());
        page->setText("javascript:alert(1)");
        QVERIFY(!dialog()->save());
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Window 3: \"javascript:alert(1)\" is not an http or https address."));
        QVERIFY(!QFile::exists(ScreensFile::path()));
        page->setText("https://closed.example/");
        control<QComboBox>("IdleCmb4")->setCurrentIndex(1);
        QVERIFY(dialog()->save());
        const QList<SlotPlace> places = ScreensFile::read(ScreensFile::path());
        QCOMPARE(places.size(), 2);
        QCOMPARE(places[0].idle, (SlotIdle{SlotIdle::Show::Page, QStringLiteral("https://closed.example/")}));
        QCOMPARE(places[1].idle.show, SlotIdle::Show::Black);
        QVERIFY(places[1].monitor.isEmpty());
        QCOMPARE(placer()->places(), places);
    }
    void cancelChangesNothing()
    {
        open();
        dialog()->monitorBox(1)->setCurrentIndex(1);
        QTest::mouseClick(dialog()->findChild<QPushButton*>("CancelBtn"), Qt::LeftButton);
        QVERIFY(!QFile::exists(ScreensFile::path()));
        QVERIFY(placer()->places().isEmpty());
    }
};

VANTREL_GUI_TEST_MAIN(TestScreensDialog)
#include "tst_screensdialog.moc"
