#include "FavoritesSync.h"

#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "verbs/FavoritesModel.h"
#include "watch/EventLog.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSysInfo>
#include <QtConcurrent/QtConcurrentRun>

#include <sys/stat.h>

FavoritesSync::FavoritesSync(FavoritesModel* favorites, QObject* parent)
    : QObject(parent), m_favorites(favorites), m_machine(QSysInfo::machineHostName())
{
    if (m_machine.isEmpty())
        m_machine = QStringLiteral("this machine");
    m_soon.setSingleShot(true);
    m_fileSoon.setSingleShot(true);
    m_scan.setInterval(kScanMs);
    connect(&m_soon, &QTimer::timeout, this, [this] { startRound(false); });
    connect(&m_fileSoon, &QTimer::timeout, this, [this] { startRound(true); });
    connect(&m_scan, &QTimer::timeout, this, [this] { startRound(false); });
    connect(&m_round, &QFutureWatcher<Done>::finished, this, &FavoritesSync::roundFinished);
    connect(m_favorites, &FavoritesModel::added, this, &FavoritesSync::favoritesTouched);
    connect(m_favorites, &FavoritesModel::removed, this, &FavoritesSync::favoritesTouched);
    connect(m_favorites, &FavoritesModel::addressChanged, this, &FavoritesSync::favoritesTouched);
    connect(m_favorites, &FavoritesModel::reset, this, &FavoritesSync::favoritesTouched);
}

FavoritesSync::~FavoritesSync()
{
    m_round.waitForFinished(); // a round never ends half done with the program
}

void FavoritesSync::applySetting()
{
    setFile(VantrelConf::text(VantrelConf::kSyncFile), VantrelConf::flag(VantrelConf::kSyncWithFile));
}

void FavoritesSync::setFile(const QString& file, bool on)
{
    on = on && !file.isEmpty();
    if (on == m_on && file == m_file)
        return;
    m_on = on;
    m_file = file;
    m_soon.stop();
    m_fileSoon.stop();
    m_lastLogged.clear();
    delete m_watcher;
    m_watcher = nullptr;
    if (!on) {
        m_scan.stop();
        return;
    }
    m_watcher = new QFileSystemWatcher(this);
    connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &FavoritesSync::fileTouched);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &FavoritesSync::fileTouched);
    watch();
    m_scan.start();
    m_soon.start(kStartDelayMs);
}

void FavoritesSync::watch()
{
    if (!m_watcher)
        return;
    // A sync program replaces the file rather than write into it, which ends a watch on the file:
    // its folder is watched too, and the file watched again after each round.
    const QString folder = QFileInfo(m_file).absolutePath();
    if (!m_watcher->directories().contains(folder) && QFileInfo(folder).isDir())
        m_watcher->addPath(folder);
    if (!m_watcher->files().contains(m_file) && QFileInfo::exists(m_file))
        m_watcher->addPath(m_file);
}

void FavoritesSync::favoritesTouched()
{
    // The tree reading the folder again after a round changed it is no change of the Favorites.
    if (m_on && !m_showingRound)
        m_soon.start(kWriteDelayMs);
}

FavoritesSync::FileMark FavoritesSync::markOf(const QString& path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {quint64(st.st_ino), qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size)};
}

void FavoritesSync::fileTouched()
{
    if (!m_on)
        return;
    // What this machine wrote itself, or another file of the folder, comes as a change too: the
    // file is looked at, not read, and left alone while it is as the last round left it.
    if (!m_fileSoon.isActive() && markOf(m_file) == m_fileMark)
        return;
    m_fileSoon.start(kFileSettleMs);
}

FavoritesSync::Done FavoritesSync::runRound(const QString& favorites, const QString& file, const QString& machine,
                                            SyncState::State state, bool load, bool fileChanged)
{
    Done done;
    if (load)
        state = SyncState::load(SyncState::path()); // the first round reads it, not the start
    const SyncState::State before = state;
    done.outcome = SyncRound::run(favorites, file, machine, &state, fileChanged);
    if (!(state == before))
        SyncState::save(SyncState::path(), state);
    done.state = std::move(state);
    done.fileMark = markOf(file);
    return done;
}

bool FavoritesSync::onlyTheFile(bool fileChanged)
{
    // A round for the file alone skips the folder when the file holds what was agreed; not when
    // the Favorites changed too.
    fileChanged = fileChanged && !m_soon.isActive();
    m_soon.stop();
    m_fileSoon.stop();
    return fileChanged;
}

void FavoritesSync::startRound(bool fileChanged)
{
    if (!m_on)
        return;
    if (m_round.isRunning()) {
        m_again = true;
        return;
    }
    m_again = false;
    m_round.setFuture(QtConcurrent::run(&FavoritesSync::runRound, globals().FavoritesPath, m_file, m_machine, m_state,
                                        !m_loaded, onlyTheFile(fileChanged)));
}

void FavoritesSync::roundFinished()
{
    if (m_round.isCanceled() || !m_round.future().isValid() || m_round.future().resultCount() == 0)
        return;
    take(m_round.result());
    m_round.setFuture(QFuture<Done>()); // taken once
    if (m_again && m_on)
        m_soon.start(kWriteDelayMs);
    m_again = false;
}

void FavoritesSync::take(const Done& done)
{
    m_state = done.state;
    m_loaded = true;
    m_fileMark = done.fileMark;
    const SyncRound::Outcome& outcome = done.outcome;
    const QString line = outcome.logText(m_file);
    // A file that cannot be used is said once, until something else happens.
    if (!line.isEmpty() && line != m_lastLogged)
        EventLog::write(line);
    m_lastLogged = outcome.problem.isEmpty() ? QString() : line;
    watch();
    if (outcome.folderChanged) {
        m_showingRound = true;
        emit favoritesChanged();
        m_showingRound = false;
    }
    emit roundDone(outcome);
}

SyncRound::Outcome FavoritesSync::syncNow(bool fileChanged)
{
    if (m_round.isRunning()) {
        m_round.waitForFinished();
        roundFinished();
    }
    if (!m_on)
        return {};
    const Done done = runRound(globals().FavoritesPath, m_file, m_machine, m_state, !m_loaded, onlyTheFile(fileChanged));
    take(done);
    return done.outcome;
}

void FavoritesSync::finish()
{
    if (m_on && (m_soon.isActive() || m_fileSoon.isActive() || m_round.isRunning() || m_again))
        syncNow(m_fileSoon.isActive() && !m_soon.isActive());
}
