// The settings of a list's page: their ranges, their words in a tool tip, their named values (as
// bookmark files carry them) and "ListPages.conf", which keeps them between starts.
#include "TestSupport.h"
#include "settings/ListPagesFile.h"
#include "settings/PageSettings.h"

#include <QFile>
#include <QTest>

class TestPageSettings : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;

    static PageSettings everything()
    {
        PageSettings s;
        s.seconds = 10;
        s.zoom = 150;
        s.reload = PageSettings::Reload::EveryMinutes;
        s.reloadMinutes = 5;
        s.scroll = PageSettings::Scroll::ToTarget;
        s.scrollTarget = QStringLiteral("main > .prices, #total");
        s.skip = true;
        return s;
    }

private slots:
    void init() { m_app = std::make_unique<TempAppFolder>(); }
    void cleanup() { m_app.reset(); }

    void aPageWithoutSettingsIsEmpty()
    {
        QVERIFY(PageSettings().isEmpty());
        QVERIFY(PageSettings().values().isEmpty());
        QCOMPARE(PageSettings().summary(), QString());
        QVERIFY(!everything().isEmpty());
    }

    void valuesAreBoundedToTheirRanges()
    {
        PageSettings s;
        s.seconds = 1;
        s.zoom = 1000;
        s.reload = PageSettings::Reload::EveryMinutes;
        s.reloadMinutes = 0;
        const PageSettings b = s.bounded();
        QCOMPARE(b.seconds, 5);
        QCOMPARE(b.zoom, 500);
        QCOMPARE(b.reloadMinutes, 1);
        s.seconds = 100000;
        s.zoom = 10;
        QCOMPARE(s.bounded().seconds, 24 * 3600);
        QCOMPARE(s.bounded().zoom, 25);
        PageSettings fit;
        fit.zoom = PageSettings::kFitWidth;
        QCOMPARE(fit.bounded().zoom, PageSettings::kFitWidth);
        // What does not stand alone goes.
        PageSettings target;
        target.scroll = PageSettings::Scroll::ToTarget;
        target.scrollTarget = QStringLiteral("   ");
        QVERIFY(target.bounded().isEmpty());
        PageSettings minutes;
        minutes.reloadMinutes = 7;
        QVERIFY(minutes.bounded().isEmpty());
    }

    void theSummarySaysEverySetting()
    {
        QCOMPARE(everything().summary(),
                 QStringLiteral("skipped for now, shown 10 s, zoom 150 %, reloaded every 5 min, scrolls to main > "
                                ".prices, #total"));
        PageSettings s;
        s.seconds = 120;
        s.zoom = PageSettings::kFitWidth;
        s.reload = PageSettings::Reload::EachShow;
        s.scroll = PageSettings::Scroll::Slowly;
        QCOMPARE(s.summary(), QStringLiteral("shown 2 min, zoomed to fit the width, reloaded each time it is shown, "
                                             "scrolls down slowly"));
        s.reload = PageSettings::Reload::Never;
        s.seconds = 7200;
        QCOMPARE(s.summary(), QStringLiteral("shown 2 h, zoomed to fit the width, never reloaded, scrolls down slowly"));
    }

    void namedValuesGoAndComeBack()
    {
        const PageSettings s = everything();
        QCOMPARE(PageSettings::fromValues(s.values()), s);
        PageSettings fit;
        fit.zoom = PageSettings::kFitWidth;
        fit.reload = PageSettings::Reload::Never;
        fit.scroll = PageSettings::Scroll::Slowly;
        QCOMPARE(fit.values(), (QList<QPair<QString, QString>>{{"zoom", "fit"}, {"reload", "never"}, {"scroll", "slowly"}}));
        QCOMPARE(PageSettings::fromValues(fit.values()), fit);
    }

    void foreignOrDamagedValuesCountForNothing()
    {
        const PageSettings s = PageSettings::fromValues(
            {{"SECONDS", "ten"}, {"zoom", "-40"}, {"reload", "sometimes"}, {"scroll", "fast"}, {"skip", "no"},
             {"colour", "red"}, {"Zoom", "9999"}});
        PageSettings expected;
        expected.zoom = 500; // the last readable zoom, bounded
        QCOMPARE(s, expected);
    }

    void theFileKeepsEachPageOnce()
    {
        const QString path = ListPagesFile::path();
        QCOMPARE(path, m_app->file("ListPages.conf"));
        QVERIFY(ListPagesFile::read(path).isEmpty()); // no file yet
        PageSettings slow;
        slow.scroll = PageSettings::Scroll::Slowly;
        const QList<ListPagesFile::Entry> entries = {
            {"Walls", "http://127.0.0.1/a?x=1,y=2;z", everything()},
            {"Walls", "http://127.0.0.1/b", slow},
            {"Other", "http://127.0.0.1/a?x=1,y=2;z", slow},
        };
        QCOMPARE(ListPagesFile::write(path, entries), RunError(RunError::None));
        QCOMPARE(ListPagesFile::read(path), entries);
    }

    void damagedEntriesAreLeftOut()
    {
        const QString path = ListPagesFile::path();
        QVERIFY(writeAll(path, "[Pages]\n"
                               "1\\list=Walls\n1\\address=http://a/\n1\\seconds=20\n"
                               "2\\list=\n2\\address=http://b/\n2\\seconds=20\n"          // no list
                               "3\\list=Walls\n3\\address=http://c/\n3\\colour=red\n"     // nothing of ours
                               "4\\list=WALLS\n4\\address=http://a/\n4\\seconds=30\n"     // the same page again
                               "5\\list=Walls\n5\\address=http://d/\n5\\zoom=fit\n"
                               "size=5\n"));
        const QList<ListPagesFile::Entry> read = ListPagesFile::read(path);
        QCOMPARE(read.size(), 2);
        QCOMPARE(read[0].address, QStringLiteral("http://a/"));
        QCOMPARE(read[0].settings.seconds, 20);
        QCOMPARE(read[1].settings.zoom, PageSettings::kFitWidth);
        QVERIFY(writeAll(path, QByteArray("\x00\xff garbage [[[", 14)));
        QVERIFY(ListPagesFile::read(path).isEmpty());
    }

    void aFileThatCannotBeWrittenSaysWhy()
    {
        const QString path = ListPagesFile::path();
        QVERIFY(ListPagesFile::write(path, {{"Walls", "http://a/", everything()}}).ok());
        const QByteArray before = readAll(path);
        {
            ReadOnlyFolder locked(m_app->path());
            PageSettings other;
            other.seconds = 60;
            QVERIFY(ListPagesFile::write(path, {{"Walls", "http://a/", other}}));
        }
        // What was there stays whole.
        QCOMPARE(readAll(path), before);
    }
};

QTEST_GUILESS_MAIN(TestPageSettings)
#include "tst_pagesettings.moc"
