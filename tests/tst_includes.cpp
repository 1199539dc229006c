// The layout of the code holds: every #include "..." of src/ runs down the folders' order (a folder
// includes only folders below it), and no two units (a .cpp with its .h) include each other round
// a circle. The checker is also run on small made-up trees, to show that it catches both.
#include "IncludeRules.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestIncludes : public QObject
{
    Q_OBJECT

    static void write(const QString& root, const QString& path, const QByteArray& text)
    {
        const QString file = root + u'/' + path;
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(text);
    }

private slots:
    void everyFolderOfTheSourcesHasItsPlaceInTheOrder()
    {
        const QStringList folders =
            QDir(QStringLiteral(VANTREL_SOURCE_DIR)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        QVERIFY(!folders.isEmpty());
        for (const QString& folder : folders)
            QVERIFY2(IncludeRules::folderOrder().contains(folder),
                     qPrintable(QStringLiteral("src/%1 is missing from the folders' order").arg(folder)));
    }

    void noIncludeRunsUpTheFolders()
    {
        const IncludeRules::Graph graph = IncludeRules::read(QStringLiteral(VANTREL_SOURCE_DIR));
        QVERIFY(graph.includes.size() > 200);
        const QStringList upward = IncludeRules::upwardIncludes(graph);
        QVERIFY2(upward.isEmpty(), qPrintable(upward.join(u'\n')));
    }

    void noUnitsIncludeEachOtherRoundACircle()
    {
        const IncludeRules::Graph graph = IncludeRules::read(QStringLiteral(VANTREL_SOURCE_DIR));
        const QStringList circles = IncludeRules::circles(graph);
        QVERIFY2(circles.isEmpty(), qPrintable(circles.join(u'\n')));
    }

    void anIncludeUpTheFoldersIsNamedWithItsFileAndLine()
    {
        QTemporaryDir dir;
        write(dir.path(), QStringLiteral("core/Globals.h"), "#pragma once\n");
        write(dir.path(), QStringLiteral("mainwindow/Vantrel1.h"), "#pragma once\n#include \"core/Globals.h\"\n");
        write(dir.path(), QStringLiteral("core/Startup.cpp"),
              "#include \"Globals.h\"\n\n#include \"mainwindow/Vantrel1.h\"\n#include <QDir>\n");
        const QStringList upward = IncludeRules::upwardIncludes(IncludeRules::read(dir.path()));
        QCOMPARE(upward, QStringList{QStringLiteral(
                             "core/Startup.cpp:3: includes mainwindow/Vantrel1.h, which is above core")});
    }

    void aCircleOfUnitsIsNamed()
    {
        QTemporaryDir dir;
        write(dir.path(), QStringLiteral("lists/ListsPanel.h"), "#pragma once\n");
        write(dir.path(), QStringLiteral("lists/ListsPanel.cpp"), "#include \"ListsPanel.h\"\n#include \"RunList1.h\"\n");
        write(dir.path(), QStringLiteral("lists/RunList1.h"), "#pragma once\n");
        write(dir.path(), QStringLiteral("lists/RunList1.cpp"), "#include \"RunList1.h\"\n#include \"lists/ListsPanel.h\"\n");
        write(dir.path(), QStringLiteral("lists/ListsTree.h"), "#pragma once\n#include \"ListsPanel.h\"\n");
        const QStringList circles = IncludeRules::circles(IncludeRules::read(dir.path()));
        QCOMPARE(circles, QStringList{QStringLiteral("lists/ListsPanel -> lists/RunList1 -> lists/ListsPanel")});
    }

    void includesOfTheSystemAndOfCoreByBareNameAreUnderstood()
    {
        QTemporaryDir dir;
        write(dir.path(), QStringLiteral("core/Clock.h"), "#pragma once\n");
        write(dir.path(), QStringLiteral("verbs/Verbs.cpp"), "#include <QObject>\n#include \"Clock.h\"\n");
        const IncludeRules::Graph graph = IncludeRules::read(dir.path());
        QCOMPARE(graph.includes.size(), 1);
        QCOMPARE(graph.includes[0].to, QStringLiteral("core/Clock.h"));
        QVERIFY(IncludeRules::upwardIncludes(graph).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestIncludes)
#include "tst_includes.moc"
