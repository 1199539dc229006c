// The Favorites folder as the program holds it, without a widget: what a walk of the folder makes
// of it, a shortcut written into it, and one taken out with everything below it.
#include "core/Globals.h"
#include "verbs/FavoritesModel.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestFavoritesModel : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_home;

    QString root() const { return m_home->filePath("Favorites"); }
    void shortcut(const QString& relative)
    {
        const QString path = root() + u'/' + relative;
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[InternetShortcut]\r\nURL=https://example.org/\r\n");
    }
    QStringList keys(const FavoritesModel& model) const
    {
        QStringList keys;
        for (const FavoritesModel::Entry& entry : model.entries())
            keys << entry.key;
        return keys;
    }

private slots:
    void init()
    {
        resetGlobals();
        m_home = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(root()));
        globals().FavoritesPath = root();
    }

    void theWalkGivesFoldersFirstThenTheirShortcutsThenThoseAtTheTop()
    {
        shortcut("News/Daily/paper.url");
        shortcut("News/radio.URL");
        shortcut("Work/mail.url");
        shortcut("top.url");
        FavoritesModel model;
        QSignalSpy reset(&model, &FavoritesModel::reset);
        model.walk();
        QVERIFY(model.entries().isEmpty()); // walking changes nothing yet
        model.takeWalk();
        QCOMPARE(reset.size(), 1);
        QCOMPARE(keys(model), (QStringList{"News", "Work", "News/Daily", "News/radio", "Work/mail",
                                           "News/Daily/paper", "top"}));
        const FavoritesModel::Entry* radio = model.find("News/radio");
        QVERIFY(radio);
        QCOMPARE(radio->parentKey, QStringLiteral("News"));
        QCOMPARE(radio->text, QStringLiteral("radio"));
        QCOMPARE(radio->path, root() + "/News/radio.URL"); // as the file lies on disk
        QVERIFY(!radio->folder);
        QCOMPARE(model.find("News/Daily")->path, root() + "/News/Daily");
        QVERIFY(model.find("News/Daily")->folder);
        QCOMPARE(model.find("top")->parentKey, QString());
    }

    void aWrittenShortcutJoinsItsFolder()
    {
        shortcut("News/radio.url");
        FavoritesModel model;
        model.rebuild();
        QSignalSpy added(&model, &FavoritesModel::added);
        QVERIFY(model.addShortcut("News", "Paper.url"));
        QVERIFY(model.addShortcut(QString(), "Top.url"));
        QVERIFY(!model.addShortcut("News", "Paper.url")); // its key is taken
        QVERIFY(!model.addShortcut("Nowhere", "Lost.url"));
        QCOMPARE(added.size(), 2);
        QCOMPARE(added[0][0].toString(), QStringLiteral("News/Paper"));
        QCOMPARE(model.find("News/Paper")->path, root() + "/News/Paper.url");
        QCOMPARE(model.find("Top")->path, root() + "/Top.url");
    }

    void takingAFolderOutTakesEverythingBelowIt()
    {
        shortcut("News/Daily/paper.url");
        shortcut("News/radio.url");
        shortcut("Work/mail.url");
        FavoritesModel model;
        model.rebuild();
        QSignalSpy removed(&model, &FavoritesModel::removed);
        QVERIFY(model.remove("News"));
        QCOMPARE(keys(model), (QStringList{"Work", "Work/mail"}));
        QCOMPARE(removed.size(), 1);
        QVERIFY(!model.remove("News"));
        QVERIFY(model.find("Work/mail"));
    }
};

QTEST_GUILESS_MAIN(TestFavoritesModel)
#include "tst_favoritesmodel.moc"
