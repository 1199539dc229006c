// The eight rows of the Surf tab on their own: hidden until their slot has a window, small rows
// without their list button, and what a window's navigation and completed page show on its row.
#include "core/Globals.h"
#include "surf/SurfRows.h"
#include "widgets/AccessibleControls.h"
#include "widgets/GradientButton.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

class TestSurfRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { installAccessibleControls(); } // as the main window does
    void init() { resetGlobals(); }

    void rowsStartHiddenAndNamedByTheirIndex()
    {
        QWidget panel;
        SurfRows rows(&panel);
        for (int row = 0; row < SurfRows::kRows; ++row) {
            QCOMPARE(rows.Button(row)->objectName(), QStringLiteral("Button_%1").arg(row));
            QCOMPARE(rows.AddFavBtn(row)->tag(), QStringLiteral("AddBtn"));
            QCOMPARE(rows.AddListBtn(row)->tag(), QStringLiteral("AddListBtn"));
            QVERIFY(rows.Button(row)->isHidden());
        }
    }

    void aScreenReaderHearsWhichWindowARowIsAndWhatItShows()
    {
        QWidget panel;
        SurfRows rows(&panel);
        auto spoken = [&](int row) {
            return QAccessible::queryAccessibleInterface(rows.Button(row))->text(QAccessible::Name);
        };
        QCOMPARE(spoken(2), QStringLiteral("Window 3, not open"));
        rows.showNavigating(3, "https://loading.example/");
        QCOMPARE(spoken(2), QStringLiteral("Window 3: loading https://loading.example/"));
        rows.showCompleted(3, "https://loading.example/", "Loaded");
        QCOMPARE(spoken(2), QStringLiteral("Window 3: Loaded"));
        rows.showTitle(3, QString());
        QCOMPARE(spoken(2), QStringLiteral("Window 3: https://loading.example/"));
        rows.hideRow(2);
        QCOMPARE(spoken(2), QStringLiteral("Window 3, not open"));
        // The current window's row is a button pressed in, not a box ticked.
        rows.setRowActive(2);
        QCOMPARE(QAccessible::queryAccessibleInterface(rows.Button(2))->role(), QAccessible::Button);
        QVERIFY(QAccessible::queryAccessibleInterface(rows.Button(2))->state().pressed);
        rows.setRowNormal(2);
        QVERIFY(!QAccessible::queryAccessibleInterface(rows.Button(2))->state().pressed);
    }

    void aSmallRowHasNoListButton()
    {
        QWidget panel;
        SurfRows rows(&panel);
        rows.showRow(0, false);
        rows.showRow(1, true);
        QVERIFY(!rows.AddListBtn(0)->isHidden());
        QVERIFY(rows.AddListBtn(1)->isHidden());
        rows.setSmall(true, 2);
        QVERIFY(rows.AddListBtn(0)->isHidden());
        rows.setSmall(false, 2);
        QVERIFY(!rows.AddListBtn(0)->isHidden());
        QVERIFY(!rows.AddListBtn(1)->isHidden());
        QVERIFY(rows.AddListBtn(2)->isHidden()); // the open rows are counted from the top
        rows.hideRow(0);
        QVERIFY(rows.Button(0)->isHidden() && rows.AddFavBtn(0)->isHidden() && rows.AddListBtn(0)->isHidden());
    }

    void aRowShowsItsWindowsPage()
    {
        QWidget panel;
        SurfRows rows(&panel);
        rows.showNavigating(3, "https://loading.example/");
        QCOMPARE(rows.Button(2)->text(), QStringLiteral("https://loading.example/"));
        QCOMPARE(rows.Button(2)->tag(), QStringLiteral("https://loading.example/"));
        QVERIFY(rows.Button(2)->value()); // the active look while it loads
        rows.showCompleted(3, "https://loading.example/home", "Home");
        QCOMPARE(rows.Button(2)->text(), QStringLiteral("Home"));
        QCOMPARE(rows.Button(2)->toolTip(), QStringLiteral("https://loading.example/home"));
        rows.showTitle(3, "Home, later");
        QCOMPARE(rows.Button(2)->text(), QStringLiteral("Home, later"));
        rows.setAllRowsNormal();
        QVERIFY(!rows.Button(2)->value());
        rows.showNavigating(9, "nowhere"); // not a slot: nothing happens
    }

    void aClickOnARowIsTold()
    {
        QWidget panel;
        SurfRows rows(&panel);
        QSignalSpy clicked(&rows, &SurfRows::rowClicked);
        rows.showRow(4, false);
        panel.show();
        rows.arrange(4700, 750, false);
        QTest::mouseClick(rows.Button(4), Qt::LeftButton);
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(clicked[0][0].toInt(), 4);
    }
};

QTEST_MAIN(TestSurfRows)
#include "tst_surfrows.moc"
