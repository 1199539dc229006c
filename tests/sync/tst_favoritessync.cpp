// The Favorites kept in step with a bookmarks file while the program runs: the setting switches it
// on and off, a change of the Favorites writes the file after a short quiet, a change of the file
// from outside comes into the folder by itself, a file that cannot be used is said once in the log,
// and the agreement is kept in the program folder for the next start.
#include "bookmarks/SyncFile.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "shortcuts/ShortcutFile.h"
#include "sync/FavoritesSync.h"
#include "verbs/FavoritesModel.h"
#include "watch/EventLog.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestFavoritesSync : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FavoritesModel> m_model;
    std::unique_ptr<FavoritesSync> m_sync;
    QString favorites() const { return m_dir->filePath("Favorites"); }
    QString shared() const { return m_dir->filePath("Nextcloud/bookmarks.xbel"); }

    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void writeBytes(const QString& path, const QByteArray& bytes)
    {
        // As a sync program delivers it: a new file put in the old one's place.
        QFile out(path + ".part");
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        out.close();
        QVERIFY(::rename(QFile::encodeName(path + ".part").constData(), QFile::encodeName(path).constData()) == 0);
    }
    static QStringList logLines()
    {
        return QString::fromUtf8(bytesOf(EventLog::path())).split(u'\n', Qt::SkipEmptyParts);
    }
    static QStringList titlesIn(const QString& file)
    {
        QStringList titles;
        for (const TreeMerge::Item& item : SyncFile::read(bytesOf(file)).tree)
            titles << item.title;
        titles.sort();
        return titles;
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        resetGlobals();
        globals().AppPath = m_dir->path();
        globals().FavoritesPath = favorites();
        qputenv("XDG_DATA_HOME", m_dir->filePath("data").toUtf8());
        QVERIFY(QDir().mkpath(m_dir->filePath("data")));
        QVERIFY(QDir().mkpath(favorites() + "/News"));
        QVERIFY(QDir().mkpath(m_dir->filePath("Nextcloud")));
        QVERIFY(WriteShortcutFile(favorites() + "/News/Paper.url", "https://paper.example/"));
        m_model = std::make_unique<FavoritesModel>();
        m_model->rebuild();
        m_sync = std::make_unique<FavoritesSync>(m_model.get());
        m_sync->setMachine("desk");
    }
    void cleanup()
    {
        m_sync.reset();
        m_model.reset();
        m_dir.reset();
    }

    void itIsOffUntilAPersonSwitchesItOn()
    {
        QVERIFY(!VantrelConf::flag(VantrelConf::kSyncWithFile));
        m_sync->applySetting();
        QVERIFY(!m_sync->isEnabled());
        QVERIFY(m_sync->syncNow().problem.isEmpty());
        QVERIFY(!QFile::exists(shared()));
        // Switched on without a file, it stays off.
        QVERIFY(VantrelConf::setValue(VantrelConf::kSyncWithFile, 1));
        m_sync->applySetting();
        QVERIFY(!m_sync->isEnabled());

        QVERIFY(VantrelConf::setText(VantrelConf::kSyncFile, shared()));
        m_sync->applySetting();
        QVERIFY(m_sync->isEnabled());
        QCOMPARE(m_sync->file(), shared());
        // The first round comes by itself, a little after.
        QSignalSpy done(m_sync.get(), &FavoritesSync::roundDone);
        QVERIFY(QTest::qWaitFor([&] { return !done.isEmpty(); }, FavoritesSync::kStartDelayMs + 5000));
        QCOMPARE(titlesIn(shared()), (QStringList{"News", "Paper"}));
        QVERIFY(QFile::exists(m_dir->filePath(SyncState::kFileName)));

        QVERIFY(VantrelConf::setValue(VantrelConf::kSyncWithFile, 0));
        m_sync->applySetting();
        QVERIFY(!m_sync->isEnabled());
        QVERIFY(WriteShortcutFile(favorites() + "/Late.url", "https://late.example/"));
        m_model->rebuild();
        QTest::qWait(FavoritesSync::kWriteDelayMs + 300);
        QCOMPARE(titlesIn(shared()), (QStringList{"News", "Paper"}));
    }

    void aChangeOfTheFavoritesIsWrittenAfterAQuiet()
    {
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        QVERIFY(WriteShortcutFile(favorites() + "/Mail.url", "https://mail.example/"));
        QVERIFY(m_model->addShortcut(QString(), "Mail.url"));
        QTest::qWait(FavoritesSync::kWriteDelayMs / 2);
        QCOMPARE(titlesIn(shared()), (QStringList{"News", "Paper"})); // not yet: more may come
        QVERIFY(QTest::qWaitFor([this] { return titlesIn(shared()).contains("Mail"); }, FavoritesSync::kWriteDelayMs + 1000));
    }

    void aChangeOfTheFileFromOutsideComesIn()
    {
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        QSignalSpy changed(m_sync.get(), &FavoritesSync::favoritesChanged);
        SyncFile::Read file = SyncFile::read(bytesOf(shared()));
        file.tree.insert("laptop-1", {QString(), false, "From the laptop", "https://laptop.example/"});
        writeBytes(shared(), SyncFile::write(file.tree, "laptop"));
        // The round ends on the window's thread, after the folder changed on another.
        QVERIFY(QTest::qWaitFor([&] { return changed.count() >= 1; }, FavoritesSync::kFileSettleMs + 5000));
        QVERIFY(QFile::exists(favorites() + "/From the laptop.URL"));
        QVERIFY(logLines().last().contains("Favorites in step with " + shared() + ": 1 made"));

        // Replaced again: the watch outlived the first replacement.
        file.tree.remove("laptop-1");
        writeBytes(shared(), SyncFile::write(file.tree, "laptop"));
        QVERIFY(QTest::qWaitFor([this] { return !QFile::exists(favorites() + "/From the laptop.URL"); },
                                FavoritesSync::kFileSettleMs + 3000));
        QVERIFY(QFile::exists(m_dir->filePath("data/Trash/files/From the laptop.URL")));
    }

    void theTreeFollowingARoundIsNoChangeOfTheFavorites()
    {
        // As the window does: what a round changed is read again into the model.
        connect(m_sync.get(), &FavoritesSync::favoritesChanged, m_model.get(), &FavoritesModel::rebuild);
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        QSignalSpy done(m_sync.get(), &FavoritesSync::roundDone);
        SyncFile::Read file = SyncFile::read(bytesOf(shared()));
        file.tree.insert("laptop-2", {QString(), false, "Radio", "https://radio.example/"});
        writeBytes(shared(), SyncFile::write(file.tree, "laptop"));
        QVERIFY(QTest::qWaitFor([&] { return done.count() == 1; }, FavoritesSync::kFileSettleMs + 5000));
        QVERIFY(m_model->find("Radio"));
        // No second round for the model's own rebuild.
        QTest::qWait(FavoritesSync::kWriteDelayMs + 500);
        QCOMPARE(done.count(), 1);
    }

    void theAgreementIsReadAgainAtTheNextStart()
    {
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        m_sync.reset(); // the program ends
        QVERIFY(QFile::remove(favorites() + "/News/Paper.url")); // deleted while it was not running
        m_sync = std::make_unique<FavoritesSync>(m_model.get());
        m_sync->setMachine("desk");
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        // Known as agreed before, so taken as deleted here, not brought back from the file.
        QVERIFY(!QFile::exists(favorites() + "/News/Paper.url"));
        QVERIFY(!QFile::exists(favorites() + "/News/Paper.URL"));
        QCOMPARE(titlesIn(shared()), QStringList{"News"});
    }

    void aFileThatCannotBeUsedIsSaidOnceAndLeftAlone()
    {
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        const QByteArray half = bytesOf(shared()).left(100);
        writeBytes(shared(), half);
        QVERIFY(QTest::qWaitFor([] { return !logLines().isEmpty() && logLines().last().contains("not used"); },
                                FavoritesSync::kFileSettleMs + 3000));
        const int lines = int(logLines().size());
        QVERIFY(!m_sync->syncNow().problem.isEmpty());
        QVERIFY(!m_sync->syncNow().problem.isEmpty());
        QCOMPARE(logLines().size(), lines); // said once
        QCOMPARE(bytesOf(shared()), half);  // and not written over
        QVERIFY(QFile::exists(favorites() + "/News/Paper.url"));
    }

    void aRoundRunsAwayFromTheWindowsThread()
    {
        m_sync->setFile(shared(), true);
        for (int i = 0; i < 4000; ++i)
            QVERIFY(WriteShortcutFile(favorites() + QStringLiteral("/News/Page %1.url").arg(i),
                                      QStringLiteral("https://page.example/%1").arg(i)));
        m_model->rebuild(); // the Favorites changed: a round comes after the quiet
        QSignalSpy done(m_sync.get(), &FavoritesSync::roundDone);
        // The event loop goes on turning while the round works.
        QVERIFY(QTest::qWaitFor([this] { return m_sync->busy(); }, FavoritesSync::kWriteDelayMs + 3000));
        QVERIFY(done.isEmpty());
        QVERIFY(QTest::qWaitFor([&] { return !done.isEmpty(); }, 20000));
        QCOMPARE(titlesIn(shared()).size(), 4002);
    }

    void aRoundStillDueIsDoneAtTheEnd()
    {
        m_sync->setFile(shared(), true);
        m_sync->syncNow();
        QVERIFY(WriteShortcutFile(favorites() + "/Last.url", "https://last.example/"));
        m_model->rebuild();
        m_sync->finish();
        QVERIFY(titlesIn(shared()).contains("Last"));
    }
};

QTEST_GUILESS_MAIN(TestFavoritesSync)
#include "tst_favoritessync.moc"
