// "Page Settings..." on the lists tree: the dialog a person fills in for a page or a whole list,
// what it says the settings will do, the mark and tool tip of a page with settings, and the
// settings carried by an exported list and brought back by its import.
#include "ListsTab.h"
#include "lists/PageSettingsDialog.h"
#include "settings/ListPagesFile.h"
#include "surf/SurfPanel.h"
#include "surf/WindowStates.h"
#include "verbs/ListsModel.h"
#include "verbs/PageSettingsStore.h"
#include "verbs/Verbs.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

namespace {
const QByteArray kLists = "Walls[#@!] [#@!] \r\n"
                          "Walls[#@!]News[#@!]https://news.example/\r\n"
                          "Walls[#@!]Chart[#@!]https://chart.example/\r\n";
}

class TestPageSettingsMenu : public QObject
{
    Q_OBJECT

    std::unique_ptr<ListsTab> t;

    PageSettingsDialog* dialog() { return t->menu()->pageSettingsDialog(); }
    template <typename T>
    T* control(const char* name)
    {
        return dialog() ? dialog()->findChild<T*>(QString::fromLatin1(name)) : nullptr;
    }
    PageSettings stored(const QString& address)
    {
        return t->main->verbs()->pageSettings()->of("Walls", address);
    }
    void openSettingsOn(const QString& key)
    {
        QVERIFY(t->chooseOn(key, t->menu()->pageSettingsAction()));
        QTRY_VERIFY(dialog() && dialog()->isVisible());
    }

private slots:
    void init()
    {
        t = std::make_unique<ListsTab>(kLists);
        QVERIFY(t->exposed);
    }
    void cleanup() { t.reset(); }

    void theMenuOffersPageSettingsOnAListOrAPageOnly()
    {
        QVERIFY(t->openMenuOn("https://news.example//Walls"));
        QCOMPARE(t->menu()->pageSettingsAction()->text(), QStringLiteral("Page Settings..."));
        QVERIFY(t->menu()->pageSettingsAction()->isEnabled());
        t->menu()->menu()->hide();
        QVERIFY(t->openMenuOn(QString()));
        QVERIFY(!t->menu()->pageSettingsAction()->isEnabled());
        t->menu()->menu()->hide();
    }

    void aPersonGivesAPageItsOwnTimeZoomAndScroll()
    {
        openSettingsOn("https://chart.example//Walls");
        QVERIFY(control<QLabel>("PageSettingsTitle")->text().contains("https://chart.example/"));
        // Nothing of its own yet: the run's way is shown.
        QCOMPARE(control<QSpinBox>("SecondsSpin")->text(), QStringLiteral("the run's interval"));
        QCOMPARE(control<QSpinBox>("ZoomSpin")->text(), QStringLiteral("as the page comes"));
        QVERIFY(!control<QLineEdit>("ScrollTargetEdit")->isEnabled());
        control<QSpinBox>("SecondsSpin")->setValue(10);
        control<QSpinBox>("ZoomSpin")->setValue(150);
        control<QComboBox>("ScrollCombo")->setCurrentIndex(1);
        control<QComboBox>("ReloadCombo")->setCurrentIndex(1);
        QVERIFY(control<QSpinBox>("ReloadMinutesSpin")->isEnabled());
        control<QSpinBox>("ReloadMinutesSpin")->setValue(1);
        // What it will do is said before OK.
        const QString preview = control<QLabel>("PreviewLabel")->text();
        QVERIFY2(preview.contains("Shown for 10 s, then the next page (the run's interval is 30 s)."),
                 qPrintable(preview));
        QVERIFY2(preview.contains("It scrolls from top to bottom in those 10 s."), qPrintable(preview));
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        const PageSettings s = stored("https://chart.example/");
        QCOMPARE(s.seconds, 10);
        QCOMPARE(s.zoom, 150);
        QCOMPARE(s.scroll, PageSettings::Scroll::Slowly);
        QCOMPARE(s.reload, PageSettings::Reload::EveryMinutes);
        QCOMPARE(s.reloadMinutes, 1);
        QVERIFY(stored("https://news.example/").isEmpty());
        // Kept beside the lists, which stay as they were.
        QCOMPARE(ListPagesFile::read(ListPagesFile::path()).size(), 1);
        QCOMPARE(readAll(t->app.file("DefaultList.NLS")), kLists);
        // The page shows a mark, and its settings in its tool tip; the other page neither.
        KeyedNode* chart = t->tree()->node("https://chart.example//Walls");
        QVERIFY(chart->marked());
        QCOMPARE(chart->toolTip(0), QStringLiteral("https://chart.example/\nshown 10 s, zoom 150 %, reloaded every "
                                                   "1 min, scrolls down slowly"));
        QVERIFY(!t->tree()->node("https://news.example//Walls")->marked());
        QVERIFY(t->tree()->node("https://news.example//Walls")->toolTip(0).isEmpty());
        // Opened again, it shows them; Clear and OK take them away.
        openSettingsOn("https://chart.example//Walls");
        QCOMPARE(control<QSpinBox>("SecondsSpin")->value(), 10);
        QTest::mouseClick(control<QPushButton>("ClearBtn"), Qt::LeftButton);
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        QVERIFY(stored("https://chart.example/").isEmpty());
        QVERIFY(!chart->marked());
    }

    void cancelLeavesEverythingAsItWas()
    {
        openSettingsOn("https://news.example//Walls");
        control<QCheckBox>("SkipCheck")->setChecked(true);
        QCOMPARE(control<QLabel>("PreviewLabel")->text().section(u'\n', 0, 0),
                 QStringLiteral("The run passes this page by."));
        QTest::mouseClick(control<QPushButton>("CancelBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        QVERIFY(stored("https://news.example/").isEmpty());
    }

    void settingsForAListGoToEachOfItsPages()
    {
        openSettingsOn("Walls");
        QVERIFY(control<QLabel>("PageSettingsTitle")->text().contains("Every page of the list \"Walls\" (2 pages)"));
        control<QCheckBox>("FitWidthCheck")->setChecked(true);
        QVERIFY(!control<QSpinBox>("ZoomSpin")->isEnabled());
        control<QComboBox>("ScrollCombo")->setCurrentIndex(2);
        control<QLineEdit>("ScrollTargetEdit")->setText("#prices");
        QTest::mouseClick(control<QPushButton>("OKBtn"), Qt::LeftButton);
        QTRY_VERIFY(!dialog());
        for (const QString address : {"https://news.example/", "https://chart.example/"}) {
            QCOMPARE(stored(address).zoom, PageSettings::kFitWidth);
            QCOMPARE(stored(address).scrollTarget, QStringLiteral("#prices"));
        }
    }

    void aRenamedListKeepsItsPagesSettings()
    {
        PageSettings twenty;
        twenty.seconds = 20;
        QVERIFY(t->main->verbs()->setPageSettings("Walls", "https://news.example/", twenty).ok());
        QVERIFY(t->main->verbs()->lists()->renameList("Walls", "Lobby"));
        QCOMPARE(t->main->verbs()->pageSettings()->of("Lobby", "https://news.example/").seconds, 20);
        QVERIFY(t->tree()->node("https://news.example//Lobby")->marked());
    }

    void anExportedListCarriesItsSettingsBackIn()
    {
        PageSettings s;
        s.seconds = 45;
        s.zoom = 80;
        s.skip = true;
        QVERIFY(t->main->verbs()->setPageSettings("Walls", "https://chart.example/", s).ok());
        const QString path = t->app.home() + "/Walls.html";
        QVERIFY(t->menu()->exportListFile("Walls", path, false));
        QVERIFY(readAll(path).contains("VANTREL_SECONDS=\"45\""));
        const QString imported = t->menu()->importListFile(path);
        QCOMPARE(imported, QStringLiteral("Walls_2"));
        QCOMPARE(t->main->verbs()->pageSettings()->of("Walls_2", "https://chart.example/"), s);
        QVERIFY(t->main->verbs()->pageSettings()->of("Walls_2", "https://news.example/").isEmpty());
        // The same through an XBEL file.
        const QString xbel = t->app.home() + "/Walls.xbel";
        QVERIFY(t->menu()->exportListFile("Walls", xbel, false));
        QVERIFY(readAll(xbel).contains("vantrel:seconds=\"45\""));
        QCOMPARE(t->menu()->importListFile(xbel), QStringLiteral("Walls_3"));
        QCOMPARE(t->main->verbs()->pageSettings()->of("Walls_3", "https://chart.example/"), s);
    }

    void aPausedRunSaysSoOnItsWindowsRow()
    {
        QVERIFY(t->main->verbs()->runList({"Walls", 30, false, false, false}, Caller::Outside).ok());
        t->main->verbs()->tick();
        QLabel* paused = t->main->surf()->states()->pausedLabel(1);
        QVERIFY(paused);
        QVERIFY(paused->isHidden());
        QVERIFY(t->main->verbs()->pauseRun().ok());
        QTRY_VERIFY(!paused->isHidden()); // on the Surf tab, behind the Lists tab shown now
        QCOMPARE(paused->text(), QStringLiteral("paused"));
        QVERIFY(paused->toolTip().contains("Ctrl+Shift+Space"));
        QVERIFY(t->main->verbs()->resumeRun().ok());
        QTRY_VERIFY(paused->isHidden());
    }
};

VANTREL_GUI_TEST_MAIN(TestPageSettingsMenu)
#include "tst_pagesettingsmenu.moc"
