#pragma once

#include <QApplication>
#include <QByteArray>
#include <QElapsedTimer>
#include <QMimeData>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <sys/resource.h>
#include <sys/types.h>

// A fresh program folder for one test: AppPath points at it, the shared state and the dialog
// service start from scratch, and the user's home folder (with its Favorites) is a temporary one.
class TempAppFolder
{
public:
    TempAppFolder();
    ~TempAppFolder();
    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }
    QString file(const QString& name) const { return m_dir.filePath(name); }
    QString home() const { return m_home.path(); }
    QString config() const { return m_home.filePath(QStringLiteral(".config")); }
    QString favorites() const { return m_home.filePath(QStringLiteral("Favorites")); }

private:
    QTemporaryDir m_dir;
    QTemporaryDir m_home;
    QByteArray m_savedHome;
    QByteArray m_savedConfig;
};

QByteArray readAll(const QString& path);
bool writeAll(const QString& path, const QByteArray& bytes);
// The bytes of a file in tests/data.
QByteArray testData(const QString& name);

// Gives the folder the permissions `mode` (read-only by default) and checks permissions as an
// ordinary user even when the tests run as root (root would otherwise read and write anywhere).
// Undone on destruction.
class ReadOnlyFolder
{
public:
    explicit ReadOnlyFolder(const QString& path, mode_t mode = 0555);
    ~ReadOnlyFolder();

private:
    QString m_path;
    uid_t m_savedEuid;
    gid_t m_savedEgid;
};

// Limits the size of any file this process writes, so that writing more fails as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes);
    ~FileSizeLimit();

private:
    rlimit m_saved{};
};

// Waits until `done()` holds or `timeoutMs` passed, looking every few milliseconds; true when it
// holds. (The browser engine always has more events waiting, so a wait that processes events until
// none are left would only look at the end of its time.)
template <typename Predicate> bool waitFor(Predicate done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QTest::qWait(5);
    }
    return true;
}

// Saves `bytes` to `path` in a child process that is ended in the middle of the save (by the
// file-size signal, as a kill or a power cut would end it), so that the save's temporary file stays
// behind. True when the child ended that way and `path` was not replaced.
bool interruptedSave(const QString& path, const QByteArray& bytes);

// The hidden files in `folder` (names starting with ".").
QStringList hiddenFiles(const QString& folder);

// Records the addresses the program asks the desktop to open (QDesktopServices::setUrlHandler).
class UrlRecorder : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened << url; }
};

class KeyedTree;
class QAction;
class QMenu;

// The keys of a tree's nodes in their index order.
QStringList treeKeys(const KeyedTree* tree);
// The middle of a node's row in the tree's viewport (its parent opened first); a null point when
// there is no such node.
QPoint treePointOf(KeyedTree* tree, const QString& key);
// Asks for the tree's menu as a right click on the node `key` does (an empty key: on the empty
// space at the bottom of the tree).
void rightClickTree(KeyedTree* tree, const QString& key);
// Chooses a menu's entry as a click on it does: the menu closes, then the entry acts.
void chooseFromMenu(QMenu* menu, QAction* action);

// Delivers a drop of `data` at `pos` to `target` as a real drag does: enter, move, drop.
// True when the drop was accepted.
bool deliverDrop(QWidget* target, const QMimeData* data, const QPoint& pos);

// The main() of a test that shows windows or runs the browser engine: the engine's flags are set
// before the application object exists.
#define VANTREL_GUI_TEST_MAIN(TestObject)                                                                    \
    int main(int argc, char* argv[])                                                                         \
    {                                                                                                        \
        prepareGuiTests();                                                                                   \
        QApplication app(argc, argv);                                                                        \
        QApplication::setQuitOnLastWindowClosed(false);                                                      \
        TestObject test;                                                                                     \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }

void prepareGuiTests();
