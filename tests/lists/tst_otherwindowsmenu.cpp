// "Run in Other Windows..." and "Stop Running in Other Windows" on the lists tree: a second list
// started in windows a person chooses, its windows shown on the Surf rows, windows of a run not to
// be chosen again, and the run ended from the same menu.
#include "ListsTab.h"
#include "lists/OtherWindowsRun.h"
#include "surf/SurfPanel.h"
#include "surf/WindowStates.h"
#include "verbs/Verbs.h"
#include "widgets/GradientButton.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {
const QByteArray kLists = "Walls[#@!] [#@!] \r\n"
                          "Walls[#@!]News[#@!]https://news.example/\r\n"
                          "Walls[#@!]Chart[#@!]https://chart.example/\r\n"
                          "Empty[#@!] [#@!] \r\n";
}

class TestOtherWindowsMenu : public QObject
{
    Q_OBJECT

    std::unique_ptr<ListsTab> t;

    OtherWindowsRun* dialog() { return t->menu()->otherWindowsDialog(); }
    QCheckBox* windowBox(int slot) { return dialog()->findChild<QCheckBox*>(QString("WindowCheck_%1").arg(slot)); }
    void openOn(const QString& key)
    {
        QVERIFY(t->chooseOn(key, t->menu()->otherWindowsAction()));
        QTRY_VERIFY(dialog() && dialog()->isVisible());
    }

private slots:
    void init()
    {
        t = std::make_unique<ListsTab>(kLists);
        QVERIFY(t->exposed);
    }
    void cleanup() { t.reset(); }

    void aPersonRunsAListInWindowsOfTheirChoice()
    {
        openOn("https://news.example//Walls");
        QVERIFY(dialog()->findChild<QLabel*>("OtherWindowsTitle")->text().contains("\"Walls\""));
        // The first window showing nothing is offered.
        QCOMPARE(dialog()->chosenWindows(), QList<int>{1});
        windowBox(1)->setChecked(false);
        QVERIFY(!dialog()->findChild<QPushButton*>("GoBtn")->isEnabled()); // no window, no run
        windowBox(5)->setChecked(true);
        windowBox(6)->setChecked(true);
        auto* times = dialog()->findChild<QComboBox*>("IntervalCombo");
        times->setCurrentIndex(0); // 30 seconds
        QTest::mouseClick(dialog()->findChild<QPushButton*>("GoBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        const QList<RunState> runs = t->main->verbs()->otherRuns();
        QCOMPARE(runs.size(), 1);
        QCOMPARE(runs[0].list, QStringLiteral("Walls"));
        QCOMPARE(runs[0].windows, (QList<int>{5, 6}));
        QCOMPARE(runs[0].intervalSeconds, 30);
        QVERIFY(runs[0].loop);
        QVERIFY(runs[0].severalWindows);
        // Its first page opens in its first window, and the Surf rows show that window.
        t->main->verbs()->tick();
        QCOMPARE(t->created.size(), 1);
        QCOMPARE(t->created[0]->navigations, QStringList{"https://news.example/"});
        QVERIFY(t->main->surf()->Button(4)->isVisibleTo(t->main->surf()));
        // Held while someone uses its window: its row says so.
        emit t->created[0]->personActed();
        QTRY_VERIFY(!t->main->surf()->states()->pausedLabel(5)->isHidden());
        QVERIFY(t->main->surf()->states()->pausedLabel(5)->toolTip().contains("while someone uses this window"));
        QVERIFY(t->main->surf()->states()->pausedLabel(1)->isHidden());
        // Its windows cannot be given to another run; the list's menu offers to stop it.
        openOn("Walls");
        QVERIFY(!windowBox(5)->isEnabled());
        QVERIFY(!windowBox(6)->isEnabled());
        QVERIFY(windowBox(7)->isEnabled());
        QTest::mouseClick(dialog()->findChild<QPushButton*>("CancelBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        QVERIFY(t->openMenuOn("Walls"));
        QVERIFY(t->menu()->stopOtherWindowsAction()->isEnabled());
        t->choose(t->menu()->stopOtherWindowsAction());
        QTRY_VERIFY(t->main->verbs()->otherRuns().isEmpty());
        QVERIFY(t->openMenuOn("Walls"));
        QVERIFY(!t->menu()->stopOtherWindowsAction()->isEnabled());
        t->menu()->menu()->hide();
    }

    void whatKeepsARunFromStartingIsSaid()
    {
        openOn("Empty");
        QTest::mouseClick(dialog()->findChild<QPushButton*>("GoBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().value(0),
                 QStringLiteral("The list could not run in other windows: the list \"Empty\" has no pages."));
        QVERIFY(dialog()); // still open, to choose again
        QVERIFY(t->main->verbs()->otherRuns().isEmpty());
    }
};

VANTREL_GUI_TEST_MAIN(TestOtherWindowsMenu)
#include "tst_otherwindowsmenu.moc"
