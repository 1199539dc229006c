#pragma once

#include "bookmarks/SyncRound.h"
#include "bookmarks/SyncedFolder.h"
#include "shortcuts/ShortcutFile.h"
#include "core/FileName.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>
#include <QString>

#include <sys/stat.h>

// Two machines that keep their Favorites folders in step through one shared bookmarks file, for
// the tests and the benchmark of the rounds: each machine is a real folder with its own agreement,
// edited as a person with a file manager would (new shortcuts and folders, renames, moves, new
// addresses, deletions of shortcuts and of whole folders), and a ledger of every address that was
// made and not deleted on purpose, which must never vanish.
class TwoMachines
{
public:
    struct Machine
    {
        QString name;
        QString favorites;
        SyncState::State state;
    };

    TwoMachines(const QString& folder, quint32 seed)
        : m_file(folder + QStringLiteral("/Shared/bookmarks.xbel")), m_random(seed)
    {
        QDir().mkpath(folder + QStringLiteral("/Shared"));
        for (const char* name : {"desk", "laptop"}) {
            Machine machine{QString::fromLatin1(name), folder + u'/' + QString::fromLatin1(name) + QStringLiteral("/Favorites"), {}};
            QDir().mkpath(machine.favorites);
            m_machines << machine;
        }
    }

    Machine& machine(int i) { return m_machines[i]; }
    // What the last turn of settle() did on each machine, for a failure's message.
    QString lastSettle() const { return m_lastSettle; }
    QString file() const { return m_file; }
    QRandomGenerator& random() { return m_random; }

    SyncRound::Outcome round(int i, bool fileChanged = false)
    {
        Machine& m = m_machines[i];
        return SyncRound::run(m.favorites, m_file, m.name, &m.state, fileChanged);
    }

    // Rounds on both machines in turns until neither changes anything (at most `most` turns each);
    // false when they never settled.
    bool settle(int most = 4)
    {
        for (int turn = 0; turn < most; ++turn) {
            const SyncRound::Outcome a = round(0), b = round(1);
            m_lastSettle = a.logText(QStringLiteral("desk")) + u'|' + b.logText(QStringLiteral("laptop"));
            if (!a.problem.isEmpty() || !b.problem.isEmpty())
                return false;
            if (!a.folderChanged && !a.fileWritten && !b.folderChanged && !b.fileWritten)
                return true;
        }
        return false;
    }

    // The tree each folder holds, with the ids its machine knows.
    TreeMerge::Tree tree(int i)
    {
        return SyncedFolder::read(m_machines[i].favorites, m_machines[i].state.places).tree;
    }

    // Every address in a folder.
    static QSet<QString> addresses(const TreeMerge::Tree& tree)
    {
        QSet<QString> urls;
        for (const TreeMerge::Item& item : tree)
            if (!item.folder)
                urls.insert(item.url);
        return urls;
    }

    // The addresses made and not deleted on purpose on either machine: each must still be there.
    QSet<QString> alive() const { return m_made - m_deleted; }

    // One edit of the folder of machine `i`, as a person with a file manager would make it.
    QString edit(int i)
    {
        const QString root = m_machines[i].favorites;
        QStringList folders{QString()}, shortcuts;
        QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next().mid(root.size() + 1);
            if (it.fileInfo().isDir())
                folders << path;
            else if (path.endsWith(QStringLiteral(".URL"), Qt::CaseInsensitive))
                shortcuts << path;
        }
        folders.sort();
        shortcuts.sort();
        const QString someFolder = pick(folders);
        const QString someShortcut = pick(shortcuts);
        switch (m_random.bounded(shortcuts.size() < 8 ? 3 : 9)) {
        case 0:
        case 1: { // a new shortcut
            const QString url = newAddress();
            const QString name = freeName(root, someFolder, pickName(), QStringLiteral(".url"));
            if (name.isEmpty() || !WriteShortcutFile(full(root, someFolder, name), url))
                return QStringLiteral("nothing");
            m_made.insert(url);
            return QStringLiteral("made %1").arg(name);
        }
        case 2: { // a new folder
            const QString name = freeName(root, someFolder, QStringLiteral("F%1").arg(m_random.bounded(5)), QString());
            return !name.isEmpty() && QDir().mkdir(full(root, someFolder, name)) ? QStringLiteral("folder %1").arg(name)
                                                                                 : QStringLiteral("nothing");
        }
        case 3: { // a shortcut renamed in its folder
            const QString folder = someShortcut.section(u'/', 0, -2);
            const QString name = freeName(root, folder, pickName(), QStringLiteral(".url"));
            return moveTo(root, someShortcut, folder, name);
        }
        case 4: { // a shortcut moved to another folder
            const QString name = freeName(root, someFolder, someShortcut.section(u'/', -1).chopped(4), QStringLiteral(".url"));
            return moveTo(root, someShortcut, someFolder, name);
        }
        case 5: { // a shortcut pointed elsewhere
            const QString url = newAddress();
            const QString old = ShortcutAddress(full(root, QString(), someShortcut));
            if (!WriteShortcutFile(full(root, QString(), someShortcut), url))
                return QStringLiteral("nothing");
            m_made.insert(url);
            m_deleted.insert(old);
            return QStringLiteral("readdressed %1").arg(someShortcut);
        }
        case 6: { // a shortcut deleted
            m_deleted.insert(ShortcutAddress(full(root, QString(), someShortcut)));
            QFile::remove(full(root, QString(), someShortcut));
            return QStringLiteral("deleted %1").arg(someShortcut);
        }
        case 7: { // a folder with everything in it deleted (rarely: it takes much)
            if (someFolder.isEmpty() || m_random.bounded(3) != 0)
                return QStringLiteral("nothing");
            QDirIterator inside(full(root, QString(), someFolder), {QStringLiteral("*.url"), QStringLiteral("*.URL")},
                                QDir::Files, QDirIterator::Subdirectories);
            while (inside.hasNext())
                m_deleted.insert(ShortcutAddress(inside.next()));
            QDir(full(root, QString(), someFolder)).removeRecursively();
            return QStringLiteral("deleted folder %1").arg(someFolder);
        }
        default: { // a folder moved into another one (never into itself)
            const QString folder = pick(folders);
            if (folder.isEmpty() || someFolder == folder || someFolder.startsWith(folder + u'/'))
                return QStringLiteral("nothing");
            const QString name = freeName(root, someFolder, folder.section(u'/', -1), QString());
            return moveTo(root, folder, someFolder, name);
        }
        }
    }

private:
    static QString full(const QString& root, const QString& folder, const QString& name)
    {
        return root + (folder.isEmpty() ? QString() : u'/' + folder) + (name.isEmpty() ? QString() : u'/' + name);
    }
    QString pick(const QStringList& from)
    {
        return from.isEmpty() ? QString() : from.at(int(m_random.bounded(from.size())));
    }
    QString pickName()
    {
        // Few names, so that names are taken and the same names meet on both machines.
        return QStringLiteral("Page %1").arg(m_random.bounded(12));
    }
    QString newAddress()
    {
        return QStringLiteral("https://e%1.example/page?n=%2").arg(m_random.bounded(50)).arg(++m_counter);
    }
    // A name free in the folder, as a file manager would never write over a file.
    static QString freeName(const QString& root, const QString& folder, const QString& base, const QString& extension)
    {
        for (int n = 1; n < 100; ++n) {
            const QString name = (n == 1 ? base : QStringLiteral("%1 %2").arg(base).arg(n)) + extension;
            struct stat st {};
            if (::lstat(FileName::encode(full(root, folder, name)).constData(), &st) != 0)
                return name;
        }
        return QString();
    }
    static QString moveTo(const QString& root, const QString& from, const QString& folder, const QString& name)
    {
        if (from.isEmpty() || name.isEmpty())
            return QStringLiteral("nothing");
        return QFile::rename(full(root, QString(), from), full(root, folder, name))
                   ? QStringLiteral("moved %1 to %2/%3").arg(from, folder, name)
                   : QStringLiteral("nothing");
    }

    QString m_file;
    QRandomGenerator m_random;
    QList<Machine> m_machines;
    QSet<QString> m_made, m_deleted;
    int m_counter = 0;
    QString m_lastSettle;
};
