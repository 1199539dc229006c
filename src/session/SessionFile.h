#pragma once

#include "core/Startup.h"

#include <QList>
#include <QString>

#include <optional>

// What Vantrel was doing, kept in "Session.INI" in the program folder so that a start after a
// crash or a power cut can pick up where it was: the open browser windows (slot, address, title),
// the current slot, the new-window mode, the run that was going, and whether the program ended
// with its unload. The file is an INI file replaced atomically: a reader finds the old session or
// the new one, never half of each.
struct SessionWindow
{
    int slot = 0; // 1 to 8
    QString address;
    QString title;
    bool operator==(const SessionWindow&) const = default;
};

struct SessionRun
{
    QString list;         // the list's name as the run dialog showed it
    int interval = 30;    // seconds
    bool loop = false;
    bool severalWindows = false;
    bool keepPagesLoaded = false;
    int position = 0;     // the run's position: the page that opens next
    QList<int> windows;   // a run in other windows: its windows; empty for the run dialog's run
    bool operator==(const SessionRun&) const = default;
};

struct Session
{
    QList<SessionWindow> windows; // in slot order
    int currentSlot = 0;
    bool newWindowMode = true;
    std::optional<SessionRun> run; // a run was going
    QList<SessionRun> otherRuns;   // runs in other windows that were going
    bool endedNormally = false;    // the program ended with its unload
    bool operator==(const Session&) const = default;
};

namespace SessionFile {

inline constexpr const char* kFileName = kSessionFileName;
inline constexpr int kVersion = 1;

QString path();

// The session in `file`; nothing when there is no file or it cannot be trusted (damaged, from
// another version, slots outside 1 to 8), with the reason in `problem` for the latter.
std::optional<Session> read(const QString& file, QString* problem = nullptr);
// Replaces `file` with `session`; false when it could not be written.
bool write(const QString& file, const Session& session);

// The file's text for `session`, and the session in such a text (nothing, with the reason in
// `problem`, when it cannot be trusted).
QByteArray format(const Session& session);
std::optional<Session> parse(const QByteArray& bytes, QString* problem = nullptr);

} // namespace SessionFile
