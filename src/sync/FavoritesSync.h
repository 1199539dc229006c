#pragma once

#include "bookmarks/SyncRound.h"
#include "bookmarks/SyncState.h"

#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

class FavoritesModel;
class QFileSystemWatcher;

// Keeps the Favorites folder in step with a bookmarks file, when the person asked for it ("Keep my
// Favorites in step with a bookmarks file" on More Options): a round (SyncRound) shortly after the
// Favorites change, as soon as the file changes from outside (another machine's Vantrel through a
// synced folder, a browser extension), every minute for what a file manager changed in the folder,
// a little after the start and once more at the end. The rounds run away from the window's thread:
// a Favorites folder of tens of thousands of shortcuts takes a fraction of a second to look over.
// What a round did, and why a file was not used, goes into the log; the same problem is said
// once, not every minute.
class FavoritesSync : public QObject
{
    Q_OBJECT

public:
    // The Favorites change in bursts (an import, a drop of fifty pages): the file is written once
    // they have been quiet this long.
    static constexpr int kWriteDelayMs = 2000;
    // A sync program writes the file in pieces: it is read once it has been still this long.
    static constexpr int kFileSettleMs = 1000;
    // What other programs change in the folder is looked for this often.
    static constexpr int kScanMs = 60 * 1000;
    // The first round waits this long after the start, so that it does not hold the start up.
    static constexpr int kStartDelayMs = 3000;

    FavoritesSync(FavoritesModel* favorites, QObject* parent = nullptr);
    ~FavoritesSync() override;

    // Follows the settings: switched on (or to another file), the first round comes soon;
    // switched off, nothing more is read or written.
    void applySetting();
    // What applySetting() takes from the settings, given directly.
    void setFile(const QString& file, bool on);

    bool isEnabled() const { return m_on; }
    QString file() const { return m_file; }
    // The name this machine gives itself in the file: its host name.
    QString machine() const { return m_machine; }
    void setMachine(const QString& machine) { m_machine = machine; }
    // Whether a round is going on away from the window's thread.
    bool busy() const { return m_round.isRunning(); }

    // A round now, on this thread, after the one going on; `fileChanged` when the file is why.
    SyncRound::Outcome syncNow(bool fileChanged = false);
    // At the end of the program: a round still due is done now.
    void finish();

signals:
    // A round changed the Favorites folder: the tree reads it again.
    void favoritesChanged();
    // A round ended (also one that could not use the file).
    void roundDone(const SyncRound::Outcome& outcome);

private:
    // The file as the file system tells it: a new one, a change, or the same as before.
    struct FileMark
    {
        quint64 inode = 0;
        qint64 modified = 0; // ns
        qint64 size = -1;
        bool operator==(const FileMark&) const = default;
    };
    static FileMark markOf(const QString& path);

    struct Done
    {
        SyncRound::Outcome outcome;
        SyncState::State state;
        FileMark fileMark; // the file when the round ended
    };
    // What a round works on, and what it gives back; runs on any thread. `load`: the agreement is
    // read from its file first.
    static Done runRound(const QString& favorites, const QString& file, const QString& machine,
                         SyncState::State state, bool load, bool fileChanged);

    void startRound(bool fileChanged);
    void roundFinished();
    void take(const Done& done);
    bool onlyTheFile(bool fileChanged);
    void favoritesTouched();
    void fileTouched();
    void watch();

    FavoritesModel* m_favorites;
    QFileSystemWatcher* m_watcher = nullptr;
    QTimer m_soon;     // a round after the Favorites changed
    QTimer m_fileSoon; // a round after the file changed
    QTimer m_scan;
    QFutureWatcher<Done> m_round;
    QString m_file;
    QString m_machine;
    bool m_on = false;
    bool m_loaded = false;      // the agreement was read from its file
    bool m_showingRound = false; // the tree follows what a round changed
    FileMark m_fileMark;
    bool m_again = false; // something changed while a round went on
    SyncState::State m_state;
    QString m_lastLogged;
};
