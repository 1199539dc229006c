#include "SyncRound.h"

#include "SyncFile.h"
#include "SyncedFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace SyncRound {

namespace {

struct FileBytes
{
    bool there = false;
    QByteArray bytes;
    QString problem;
};

FileBytes readFile(const QString& file)
{
    FileBytes result;
    QFile in(file);
    if (!in.exists())
        return result;
    result.there = true;
    if (in.size() > kMaxFileBytes) {
        result.problem = QStringLiteral("it is bigger than %1 MB").arg(kMaxFileBytes / (1024 * 1024));
        return result;
    }
    if (!in.open(QIODevice::ReadOnly)) {
        result.problem = QStringLiteral("it cannot be read (%1)").arg(in.errorString());
        return result;
    }
    result.bytes = in.read(kMaxFileBytes + 1);
    return result;
}

// Where an entry stands, told by titles: its folders' titles, its own, and its address.
QString placeKey(const TreeMerge::Tree& tree, const QString& id)
{
    QStringList parts;
    QString at = id;
    for (qsizetype steps = 0; !at.isEmpty() && tree.contains(at) && steps <= tree.size(); ++steps) {
        const TreeMerge::Item& item = tree[at];
        parts.prepend(item.folder ? item.title + u'/' : item.title + u'\x1e' + item.url);
        at = item.parent;
    }
    return parts.join(u'\x1f');
}

// With no agreement yet (this machine's first round with the file), what stands at the same place
// with the same address on both sides is one entry: it takes the file's id, so that two machines
// that held the same Favorites before they were put in step do not get everything twice.
void adoptIds(const TreeMerge::Tree& theirs, SyncedFolder::Read* mine)
{
    QHash<QString, QString> theirIds;
    for (auto it = theirs.cbegin(); it != theirs.cend(); ++it)
        theirIds.insert(placeKey(theirs, it.key()), it.key());
    QHash<QString, QString> renamed;
    for (auto it = mine->tree.cbegin(); it != mine->tree.cend(); ++it) {
        const QString theirId = theirIds.take(placeKey(mine->tree, it.key()));
        if (!theirId.isEmpty() && theirId != it.key() && !mine->tree.contains(theirId))
            renamed.insert(it.key(), theirId);
    }
    if (renamed.isEmpty())
        return;
    SyncedFolder::Read adopted;
    for (auto it = mine->tree.cbegin(); it != mine->tree.cend(); ++it) {
        TreeMerge::Item item = *it;
        item.parent = renamed.value(item.parent, item.parent);
        const QString id = renamed.value(it.key(), it.key());
        adopted.tree.insert(id, item);
        adopted.places.insert(id, mine->places.value(it.key()));
    }
    *mine = adopted;
}

bool writeFile(const QString& file, const QByteArray& bytes, QString* problem)
{
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit()) {
        *problem = QStringLiteral("it could not be written (%1)").arg(out.errorString());
        return false;
    }
    return true;
}

} // namespace

QString Outcome::logText(const QString& file) const
{
    if (!problem.isEmpty())
        return QStringLiteral("bookmarks file %1 not used: %2").arg(file, problem);
    QStringList done;
    const auto count = [&](int n, const char* what) {
        if (n)
            done << QStringLiteral("%1 %2").arg(n).arg(QLatin1String(what));
    };
    count(made, "made");
    count(moved, "moved or renamed");
    count(readdressed, "pointed elsewhere");
    count(trashed, "sent to the trash");
    if (!copies.isEmpty())
        done << QStringLiteral("kept twice: %1").arg(copies.join(QStringLiteral(", ")));
    if (!failed.isEmpty())
        done << QStringLiteral("not done: %1").arg(failed.join(QStringLiteral("; ")));
    if (done.isEmpty())
        return fileWritten ? QStringLiteral("bookmarks file %1 written").arg(file) : QString();
    return QStringLiteral("Favorites in step with %1: %2").arg(file, done.join(QStringLiteral(", ")));
}

Outcome run(const QString& favorites, const QString& file, const QString& machine, SyncState::State* state,
            bool fileChanged)
{
    Outcome outcome;
    if (!QFileInfo(favorites).isDir()) {
        outcome.problem = QStringLiteral("the Favorites folder %1 is not there").arg(favorites);
        return outcome;
    }
    if (!QFileInfo(QFileInfo(file).absolutePath()).isDir()) {
        outcome.problem = QStringLiteral("its folder is not there");
        return outcome;
    }
    if (state->file != file)
        *state = SyncState::State{file, {}, {}, state->places}; // a new file: no agreement yet

    const FileBytes onDisk = readFile(file);
    if (!onDisk.problem.isEmpty()) {
        outcome.problem = onDisk.problem;
        return outcome;
    }
    SyncFile::Read theirs;
    const bool asAgreed = onDisk.there && SyncState::hashOf(onDisk.bytes) == state->agreed;
    if (asAgreed) {
        if (fileChanged)
            return outcome; // what this machine wrote, or read already
        theirs.tree = state->base; // nothing changed there: no need to read it again
    } else if (onDisk.there) {
        theirs = SyncFile::read(onDisk.bytes);
        if (!theirs.ok()) {
            outcome.problem = theirs.problem + QStringLiteral("; it is not written over until it reads whole again");
            return outcome;
        }
    } else {
        theirs.tree = state->base; // a file not there (yet, or any more) changes nothing here
    }

    SyncedFolder::Read mine = SyncedFolder::read(favorites, state->places);
    if (asAgreed && mine.tree == state->base) {
        state->places = mine.places; // nothing changed on either side: what runs every minute
        return outcome;
    }
    const bool firstRound = state->agreed.isEmpty();
    if (firstRound && onDisk.there)
        adoptIds(theirs.tree, &mine);
    const QString theirName = theirs.machine.isEmpty() ? QStringLiteral("another machine") : theirs.machine;
    const TreeMerge::Result merged = TreeMerge::merge(state->base, mine.tree, theirs.tree, theirName);
    const TreeMerge::Tree target = SyncedFolder::distinctNames(merged.merged);
    for (const QString& id : merged.copies)
        outcome.copies << target.value(id).title;

    if (target != mine.tree) {
        const SyncedFolder::Applied applied = SyncedFolder::apply(favorites, mine, target);
        outcome.folderChanged = applied.made || applied.moved || applied.readdressed || applied.trashed;
        outcome.made = applied.made;
        outcome.moved = applied.moved;
        outcome.readdressed = applied.readdressed;
        outcome.trashed = applied.trashed;
        outcome.failed = applied.failed;
        mine = SyncedFolder::read(favorites, applied.places);
        if (!applied.failed.isEmpty()) {
            // Not agreed: the file keeps what it holds, and the next round tries again.
            state->places = mine.places;
            return outcome;
        }
    }

    // The file is written when it holds another tree, not merely another machine's name: two
    // machines would otherwise write it in turns for ever.
    QByteArray bytes = onDisk.bytes;
    if (!onDisk.there || theirs.tree != mine.tree) {
        bytes = SyncFile::write(mine.tree, machine);
        QString problem;
        if (!writeFile(file, bytes, &problem)) {
            outcome.problem = problem;
            state->places = mine.places;
            return outcome;
        }
        outcome.fileWritten = true;
    }
    state->agreed = SyncState::hashOf(bytes);
    state->base = mine.tree;
    state->places = mine.places;
    return outcome;
}

} // namespace SyncRound
