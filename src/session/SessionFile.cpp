#include "SessionFile.h"

#include "core/Globals.h"
#include "core/TextFile.h"

#include <QHash>
#include <QSet>

// The file, in INI form:
//   [Session]            Version, Ended (normally | running), Current, NewWindowMode
//   [Window<slot>]       Address, Title           one section per open slot
//   [Run]                List, Interval, Loop, SeveralWindows, KeepPagesLoaded, Position
//   [OtherRun<n>]        the same and Windows (slots, "5,6"): a run in other windows, n from 1
// Values are UTF-8 with '%', control characters and DEL written as %XX.

namespace {

QByteArray escaped(const QString& value)
{
    QByteArray out;
    for (const char c : value.toUtf8()) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f || byte == '%')
            out += '%' + QByteArray::number(byte, 16).rightJustified(2, '0').toUpper();
        else
            out += c;
    }
    return out;
}

QString unescaped(const QByteArray& value)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(value));
}

using Sections = QHash<QByteArray, QHash<QByteArray, QByteArray>>;

// The sections and their keys; nothing when a line is neither a section, a key nor empty, or a
// section or key comes twice.
std::optional<Sections> sectionsOf(const QByteArray& bytes)
{
    Sections sections;
    QByteArray current;
    for (QByteArray line : bytes.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty())
            continue;
        if (line.startsWith('[') && line.endsWith(']')) {
            current = line.mid(1, line.size() - 2);
            if (current.isEmpty() || sections.contains(current))
                return std::nullopt;
            sections.insert(current, {});
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (current.isEmpty() || equals <= 0)
            return std::nullopt;
        const QByteArray key = line.left(equals);
        if (sections[current].contains(key))
            return std::nullopt;
        sections[current].insert(key, line.mid(equals + 1));
    }
    return sections;
}

std::optional<int> number(const QHash<QByteArray, QByteArray>& section, const char* key, int minimum, int maximum)
{
    bool ok = false;
    const int value = section.value(key).toInt(&ok);
    if (!ok || value < minimum || value > maximum)
        return std::nullopt;
    return value;
}

std::optional<bool> yesNo(const QHash<QByteArray, QByteArray>& section, const char* key)
{
    const std::optional<int> value = number(section, key, 0, 1);
    return value ? std::optional<bool>(*value == 1) : std::nullopt;
}

// A run's section; nothing when it is damaged.
std::optional<SessionRun> runOf(const QHash<QByteArray, QByteArray>& run, bool inOtherWindows)
{
    const QString list = unescaped(run.value("List"));
    const std::optional<int> interval = number(run, "Interval", 1, 24 * 60 * 60);
    const std::optional<bool> loop = yesNo(run, "Loop");
    const std::optional<bool> several = yesNo(run, "SeveralWindows");
    const std::optional<bool> keep = yesNo(run, "KeepPagesLoaded");
    const std::optional<int> position = number(run, "Position", 0, 1 << 30);
    if (list.isEmpty() || !interval || !loop || !several || !keep || !position)
        return std::nullopt;
    SessionRun r{list, *interval, *loop, *several, *keep, *position, {}};
    if (!inOtherWindows)
        return r;
    for (const QByteArray& item : run.value("Windows").split(',')) {
        bool ok = false;
        const int slot = item.trimmed().toInt(&ok);
        if (!ok || slot < 1 || slot > kWindowSlots || r.windows.contains(slot))
            return std::nullopt;
        r.windows.append(slot);
    }
    return r;
}

QByteArray runText(const SessionRun& run)
{
    QByteArray out = "List=" + escaped(run.list) + "\nInterval=" + QByteArray::number(run.interval) +
                     "\nLoop=" + (run.loop ? "1" : "0") + "\nSeveralWindows=" + (run.severalWindows ? "1" : "0") +
                     "\nKeepPagesLoaded=" + (run.keepPagesLoaded ? "1" : "0") +
                     "\nPosition=" + QByteArray::number(run.position) + "\n";
    if (!run.windows.isEmpty()) {
        QByteArrayList windows;
        for (int slot : run.windows)
            windows << QByteArray::number(slot);
        out += "Windows=" + windows.join(',') + "\n";
    }
    return out;
}

std::optional<Session> refuse(QString* problem, const QString& why)
{
    if (problem)
        *problem = why;
    return std::nullopt;
}

} // namespace

namespace SessionFile {

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

std::optional<Session> read(const QString& file, QString* problem)
{
    if (problem)
        problem->clear();
    const TextFile::ReadResult content = TextFile::readBytes(file);
    if (content.error == RunError::FileNotFound || content.error == RunError::PathNotFound)
        return std::nullopt;
    if (content.error != RunError::None)
        return refuse(problem, QStringLiteral("it could not be read"));
    return parse(content.bytes, problem);
}

std::optional<Session> parse(const QByteArray& bytes, QString* problem)
{
    if (problem)
        problem->clear();
    const std::optional<Sections> sections = sectionsOf(bytes);
    if (!sections || !sections->contains("Session"))
        return refuse(problem, QStringLiteral("it is damaged"));
    const auto& head = sections->value("Session");
    bool versionOk = false;
    const int version = head.value("Version").toInt(&versionOk);
    if (!versionOk)
        return refuse(problem, QStringLiteral("it is damaged"));
    if (version != kVersion)
        return refuse(problem, QStringLiteral("it is from another version (%1)").arg(version));

    Session session;
    const QByteArray ended = head.value("Ended");
    const std::optional<int> current = number(head, "Current", 0, kWindowSlots);
    const std::optional<bool> newWindowMode = yesNo(head, "NewWindowMode");
    if ((ended != "normally" && ended != "running") || !head.contains("Current") || !newWindowMode)
        return refuse(problem, QStringLiteral("it is damaged"));
    if (!current)
        return refuse(problem, QStringLiteral("it names a slot outside 1 to %1").arg(kWindowSlots));
    session.endedNormally = ended == "normally";
    session.currentSlot = *current;
    session.newWindowMode = *newWindowMode;

    for (auto section = sections->cbegin(); section != sections->cend(); ++section) {
        if (!section.key().startsWith("Window"))
            continue;
        bool ok = false;
        const int slot = section.key().mid(6).toInt(&ok);
        if (!ok)
            return refuse(problem, QStringLiteral("it is damaged"));
        if (slot < 1 || slot > kWindowSlots)
            return refuse(problem, QStringLiteral("it names a slot outside 1 to %1").arg(kWindowSlots));
        if (std::any_of(session.windows.cbegin(), session.windows.cend(),
                        [slot](const SessionWindow& w) { return w.slot == slot; }))
            return refuse(problem, QStringLiteral("it is damaged")); // "Window3" and "Window03"
        const QString address = unescaped(section->value("Address"));
        if (address.trimmed().isEmpty() || !section->contains("Title"))
            return refuse(problem, QStringLiteral("it is damaged"));
        session.windows.append({slot, address, unescaped(section->value("Title"))});
    }
    std::sort(session.windows.begin(), session.windows.end(),
              [](const SessionWindow& a, const SessionWindow& b) { return a.slot < b.slot; });

    if (sections->contains("Run")) {
        session.run = runOf(sections->value("Run"), false);
        if (!session.run)
            return refuse(problem, QStringLiteral("it is damaged"));
    }
    // The runs in other windows, in their order; two never share a window.
    for (int n = 1; sections->contains("OtherRun" + QByteArray::number(n)); ++n) {
        const std::optional<SessionRun> other = runOf(sections->value("OtherRun" + QByteArray::number(n)), true);
        if (!other)
            return refuse(problem, QStringLiteral("it is damaged"));
        for (const SessionRun& before : std::as_const(session.otherRuns))
            for (int slot : other->windows)
                if (before.windows.contains(slot))
                    return refuse(problem, QStringLiteral("it is damaged"));
        session.otherRuns.append(*other);
    }
    return session;
}

bool write(const QString& file, const Session& session)
{
    return TextFile::writeAtomically(file, format(session)) == RunError::None;
}

QByteArray format(const Session& session)
{
    QByteArray out = "[Session]\nVersion=" + QByteArray::number(kVersion) +
                     "\nEnded=" + (session.endedNormally ? "normally" : "running") +
                     "\nCurrent=" + QByteArray::number(session.currentSlot) +
                     "\nNewWindowMode=" + (session.newWindowMode ? "1" : "0") + "\n";
    for (const SessionWindow& window : session.windows)
        out += "\n[Window" + QByteArray::number(window.slot) + "]\nAddress=" + escaped(window.address) +
               "\nTitle=" + escaped(window.title) + "\n";
    if (session.run)
        out += "\n[Run]\n" + runText(*session.run);
    for (qsizetype i = 0; i < session.otherRuns.size(); ++i)
        out += "\n[OtherRun" + QByteArray::number(i + 1) + "]\n" + runText(session.otherRuns[i]);
    return out;
}

} // namespace SessionFile
