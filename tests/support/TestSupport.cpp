#include "TestSupport.h"

#include "browser/BrowserEngine.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/TextFile.h"
#include "widgets/KeyedTree.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMenu>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
constexpr uid_t kNobody = 65534;
}

TempAppFolder::TempAppFolder() : m_savedHome(qgetenv("HOME")), m_savedConfig(qgetenv("XDG_CONFIG_HOME"))
{
    resetGlobals();
    DialogService::reset();
    globals().AppPath = m_dir.path();
    qputenv("HOME", QFile::encodeName(m_home.path()));
    // The desktop's settings (the autostart folder among them) are the scratch home's too.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral(".config"))));
}

TempAppFolder::~TempAppFolder()
{
    DialogService::reset();
    qputenv("HOME", m_savedHome);
    if (m_savedConfig.isNull())
        qunsetenv("XDG_CONFIG_HOME");
    else
        qputenv("XDG_CONFIG_HOME", m_savedConfig);
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

bool writeAll(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

QByteArray testData(const QString& name)
{
    return readAll(QStringLiteral(VANTREL_TEST_DATA "/") + name);
}

ReadOnlyFolder::ReadOnlyFolder(const QString& path, mode_t mode)
    : m_path(path), m_savedEuid(::geteuid()), m_savedEgid(::getegid())
{
    const QByteArray native = QFile::encodeName(path);
    ::chmod(native.constData(), mode);
    if (m_savedEuid == 0) {
        // An ordinary user must be able to reach the folder to be refused by it: open up the
        // test's own temporary folders between it and the system's temporary folder.
        const QByteArray tempRoot = QFile::encodeName(QDir::tempPath()) + '/';
        for (QByteArray dir = native.left(native.lastIndexOf('/'));
             dir.startsWith(tempRoot) && dir.size() > tempRoot.size(); dir = dir.left(dir.lastIndexOf('/'))) {
            struct stat st
            {
            };
            if (::stat(dir.constData(), &st) == 0)
                ::chmod(dir.constData(), (st.st_mode & 07777) | 0005);
        }
        if (::setegid(kNobody) != 0 || ::seteuid(kNobody) != 0)
            qFatal("cannot act as an ordinary user");
    }
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    if (m_savedEuid == 0) {
        if (::seteuid(m_savedEuid) != 0 || ::setegid(m_savedEgid) != 0)
            qFatal("cannot return to the test's own user");
    }
    ::chmod(QFile::encodeName(m_path).constData(), 0755);
}

bool interruptedSave(const QString& path, const QByteArray& bytes)
{
    const QByteArray before = readAll(path);
    const pid_t child = ::fork();
    if (child < 0)
        return false;
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_DFL); // past the limit the save is ended by the signal
        rlimit limit{};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = rlim_t(bytes.size() / 2);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        TextFile::writeAtomically(path, bytes);
        ::_exit(0);
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child)
        return false;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ && readAll(path) == before;
}

QStringList hiddenFiles(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral(".*")}, QDir::Files | QDir::Hidden);
}

FileSizeLimit::FileSizeLimit(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN); // the write fails with EFBIG instead of ending the test
    ::getrlimit(RLIMIT_FSIZE, &m_saved);
    rlimit limited = m_saved;
    limited.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limited);
}

FileSizeLimit::~FileSizeLimit()
{
    ::setrlimit(RLIMIT_FSIZE, &m_saved);
}

void prepareGuiTests()
{
    BrowserEngine::prepare();
}

bool deliverDrop(QWidget* target, const QMimeData* data, const QPoint& pos)
{
    QDragEnterEvent enter(pos, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QDragMoveEvent move(pos, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &move);
    QDropEvent drop(QPointF(pos), Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    return drop.isAccepted();
}

QStringList treeKeys(const KeyedTree* tree)
{
    QStringList keys;
    for (const KeyedNode* node : tree->nodes())
        keys << node->key();
    return keys;
}

QPoint treePointOf(KeyedTree* tree, const QString& key)
{
    KeyedNode* node = tree->node(key);
    if (!node)
        return QPoint();
    if (node->parent())
        node->parent()->setExpanded(true);
    return tree->visualItemRect(node).center();
}

void rightClickTree(KeyedTree* tree, const QString& key)
{
    const QPoint pos = key.isEmpty() ? QPoint(5, tree->viewport()->height() - 3) : treePointOf(tree, key);
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, tree->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(tree->viewport(), &event);
}

void chooseFromMenu(QMenu* menu, QAction* action)
{
    menu->hide();
    action->trigger();
}
