#include "SyncFile.h"

#include "BookmarkTree.h"
#include "XbelBookmarks.h"

#include <QHash>
#include <QSet>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace SyncFile {

namespace {

constexpr QStringView kNamespace = u"https://vantrel.org/xbel/sync";
constexpr QStringView kOwner = u"https://vantrel.org/sync";

struct Reader
{
    QXmlStreamReader xml;
    Read result;
    QSet<QString> seen;

    explicit Reader(const QByteArray& bytes) : xml(bytes) {}

    QString idFor(QString id, const QString& parent, int position)
    {
        id = XbelBookmarks::xmlCharacters(id).trimmed();
        if (id.isEmpty())
            id = QStringLiteral("@%1/%2").arg(parent).arg(position);
        // Two entries of one id: the second is told apart, not lost.
        const QString wanted = id;
        for (int n = 2; seen.contains(id); ++n)
            id = QStringLiteral("%1#%2").arg(wanted).arg(n);
        seen.insert(id);
        return id;
    }

    // The <title> of the element being read, the rest of it skipped; reads to its end.
    QString titleAndChildren(const QString& self, bool folder, int depth)
    {
        QString title;
        int position = 0;
        while (xml.readNextStartElement()) {
            const QStringView name = xml.name();
            if (name == u"title") {
                title = XbelBookmarks::xmlCharacters(xml.readElementText(QXmlStreamReader::IncludeChildElements));
            } else if (folder && (name == u"folder" || name == u"bookmark")) {
                entry(self, position++, depth + 1);
            } else {
                xml.skipCurrentElement();
            }
        }
        return title;
    }

    void entry(const QString& parent, int position, int depth)
    {
        const bool folder = xml.name() == u"folder";
        if (depth > kMaxBookmarkDepth) {
            xml.raiseError(QStringLiteral("folders nested deeper than %1").arg(kMaxBookmarkDepth));
            return;
        }
        const QString id = idFor(xml.attributes().value(QLatin1String("id")).toString(), parent, position);
        TreeMerge::Item item;
        item.parent = parent;
        item.folder = folder;
        if (!folder)
            item.url = XbelBookmarks::xmlCharacters(xml.attributes().value(QLatin1String("href")).toString()).trimmed();
        result.tree.insert(id, item); // before its children, which name it as their folder
        result.tree[id].title = titleAndChildren(id, folder, depth);
    }

    void info()
    {
        while (xml.readNextStartElement()) {
            if (xml.name() == u"metadata" && xml.attributes().value(QLatin1String("owner")) == kOwner) {
                const int format = xml.attributes().value(kNamespace.toString(), QStringLiteral("format")).toInt();
                if (format > kFormat)
                    xml.raiseError(QStringLiteral("it was written by a newer Vantrel (format %1; this one reads %2)")
                                       .arg(format)
                                       .arg(kFormat));
                result.machine = xml.attributes().value(kNamespace.toString(), QStringLiteral("machine")).toString();
            }
            xml.skipCurrentElement();
        }
    }
};

} // namespace

Read read(const QByteArray& bytes)
{
    Reader reader(bytes);
    QXmlStreamReader& xml = reader.xml;
    if (!xml.readNextStartElement() || xml.name() != u"xbel") {
        Read failed;
        failed.problem = xml.hasError() ? QStringLiteral("the file is not whole: %1").arg(xml.errorString())
                                        : QStringLiteral("the file is no XBEL bookmarks file");
        return failed;
    }
    int position = 0;
    while (!xml.hasError() && xml.readNextStartElement()) {
        const QStringView name = xml.name();
        if (name == u"info")
            reader.info();
        else if (name == u"folder" || name == u"bookmark")
            reader.entry(TreeMerge::kRoot, position++, 0);
        else
            xml.skipCurrentElement();
    }
    if (!xml.hasError()) {
        // Whatever follows </xbel> must be nothing but the end of the document.
        while (!xml.atEnd() && !xml.hasError())
            xml.readNext();
    }
    if (xml.hasError()) {
        Read failed;
        failed.problem = xml.error() == QXmlStreamReader::CustomError
                             ? QStringLiteral("the file is not applied: %1").arg(xml.errorString())
                             : QStringLiteral("the file is not whole (line %1: %2)").arg(xml.lineNumber()).arg(xml.errorString());
        return failed;
    }
    return std::move(reader.result);
}

QByteArray write(const TreeMerge::Tree& tree, const QString& machine)
{
    QHash<QString, QStringList> children; // by folder id
    for (auto it = tree.cbegin(); it != tree.cend(); ++it)
        children[it->parent].append(it.key());
    for (QStringList& ids : children)
        std::sort(ids.begin(), ids.end(), [&tree](const QString& a, const QString& b) {
            const TreeMerge::Item& x = tree.value(a);
            const TreeMerge::Item& y = tree.value(b);
            if (x.folder != y.folder)
                return x.folder;
            if (x.title != y.title)
                return x.title < y.title;
            return a < b;
        });
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeDTD(QString::fromLatin1(XbelBookmarks::kDoctype));
    xml.writeNamespace(kNamespace.toString(), QStringLiteral("vantrel"));
    xml.writeStartElement(QStringLiteral("xbel"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    xml.writeStartElement(QStringLiteral("info"));
    xml.writeEmptyElement(QStringLiteral("metadata"));
    xml.writeAttribute(QStringLiteral("owner"), kOwner.toString());
    xml.writeAttribute(kNamespace.toString(), QStringLiteral("format"), QString::number(kFormat));
    xml.writeAttribute(kNamespace.toString(), QStringLiteral("machine"), XbelBookmarks::xmlCharacters(machine));
    xml.writeEndElement();
    // Depth first, without recursion: a stack of the folders being written.
    struct Open
    {
        QStringList ids;
        qsizetype next = 0;
    };
    std::vector<Open> stack{{children.value(TreeMerge::kRoot), 0}};
    QSet<QString> written;
    while (!stack.empty()) {
        Open& open = stack.back();
        if (open.next >= open.ids.size()) {
            stack.pop_back();
            if (!stack.empty())
                xml.writeEndElement(); // </folder>
            continue;
        }
        const QString id = open.ids.at(open.next++);
        if (written.contains(id))
            continue; // a folder inside itself would never end
        written.insert(id);
        const TreeMerge::Item& item = tree.value(id);
        xml.writeStartElement(item.folder ? QStringLiteral("folder") : QStringLiteral("bookmark"));
        xml.writeAttribute(QStringLiteral("id"), XbelBookmarks::xmlCharacters(id));
        if (!item.folder)
            xml.writeAttribute(QStringLiteral("href"), XbelBookmarks::xmlCharacters(item.url));
        xml.writeStartElement(QStringLiteral("title"));
        XbelBookmarks::writeText(xml, item.title);
        xml.writeEndElement();
        if (item.folder)
            stack.push_back({children.value(id), 0});
        else
            xml.writeEndElement();
    }
    xml.writeEndElement(); // </xbel>
    xml.writeEndDocument();
    return bytes;
}

} // namespace SyncFile
