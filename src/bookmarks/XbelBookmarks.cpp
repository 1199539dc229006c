#include "bookmarks/XbelBookmarks.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <vector>

namespace XbelBookmarks {

namespace {

// The namespace of the attributes that carry a link's extras, bound to the prefix "vantrel" on
// <xbel>. Readers of XBEL pass over attributes of namespaces they do not know.
constexpr QStringView kExtrasNamespace = u"https://vantrel.org/xbel/page";
constexpr QStringView kExtrasPrefix = u"vantrel";


// At a <title>: its text, read to its end tag; markup inside it is dropped, its text kept.
QString titleText(QXmlStreamReader& xml)
{
    return xmlCharacters(xml.readElementText(QXmlStreamReader::IncludeChildElements));
}

// At a <bookmark>: the bookmark, read to its end tag. Its first <title> is its title; anything
// else inside it is skipped. Its attributes in the extras' namespace, whatever the prefix bound to
// it, are its extras.
BookmarkNode readBookmark(QXmlStreamReader& xml)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    BookmarkNode link = BookmarkNode::link(QString(), xmlCharacters(attributes.value(QLatin1String("href")).toString()));
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (link.extras.size() >= kMaxBookmarkExtras)
            break;
        if (attribute.namespaceUri() == kExtrasNamespace)
            addBookmarkExtra(link.extras, attribute.name(), xmlCharacters(attribute.value().toString()));
    }
    bool titled = false;
    while (xml.readNextStartElement()) {
        if (!titled && xml.qualifiedName() == u"title") {
            link.title = titleText(xml);
            titled = true;
        } else {
            xml.skipCurrentElement();
        }
    }
    return link;
}

// The writer puts a carriage return into text as it is, and an XML reader turns it into a line
// feed; as a reference it comes back as itself.

void writeTitle(QXmlStreamWriter& xml, const QString& title)
{
    xml.writeStartElement(QStringLiteral("title"));
    writeText(xml, title);
    xml.writeEndElement();
}

// Whether a link below `folder` has extras to write, and so the file the extras' namespace.
bool writesExtras(const BookmarkNode& folder)
{
    for (const BookmarkNode& child : folder.children)
        if ((child.kind == BookmarkNode::Kind::Link && !boundedBookmarkExtras(child.extras).isEmpty())
            || writesExtras(child))
            return true;
    return false;
}

void writeChildren(QXmlStreamWriter& xml, const BookmarkNode& folder)
{
    for (const BookmarkNode& child : folder.children) {
        switch (child.kind) {
        case BookmarkNode::Kind::Folder:
            xml.writeStartElement(QStringLiteral("folder"));
            writeTitle(xml, child.title);
            writeChildren(xml, child);
            xml.writeEndElement();
            break;
        case BookmarkNode::Kind::Link:
            xml.writeStartElement(QStringLiteral("bookmark"));
            xml.writeAttribute(QStringLiteral("href"), xmlCharacters(child.url));
            for (const auto& [name, value] : boundedBookmarkExtras(child.extras))
                xml.writeAttribute(kExtrasNamespace.toString(), name, xmlCharacters(value));
            writeTitle(xml, child.title);
            xml.writeEndElement();
            break;
        case BookmarkNode::Kind::Separator:
            xml.writeEmptyElement(QStringLiteral("separator"));
            break;
        }
    }
}

} // namespace

void writeText(QXmlStreamWriter& xml, const QString& text)
{
    const QStringList lines = xmlCharacters(text).split(u'\r');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i > 0)
            xml.writeEntityReference(QStringLiteral("#13"));
        if (!lines[i].isEmpty() || lines.size() == 1)
            xml.writeCharacters(lines[i]); // even an empty title closes its start tag: <title></title>
    }
}

// The XML reader lets some of these through in a document it finds damaged further on, so what
// is read is cleaned too.
QString xmlCharacters(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += c;
            out += text[++i];
            continue;
        }
        const char16_t u = c.unicode();
        if (c.isSurrogate() || u == 0xFFFE || u == 0xFFFF || (u < 0x20 && u != u'\t' && u != u'\n' && u != u'\r'))
            continue;
        out += c;
    }
    return out;
}

BookmarkRead read(const QByteArray& bytes)
{
    BookmarkRead result;
    if (bytes.trimmed().isEmpty()) {
        result.problem = QStringLiteral("The file is not a bookmarks file: it is empty");
        return result;
    }
    QXmlStreamReader xml(bytes);
    // The root, then the folders whose end tag has not come yet; with each, whether its title was
    // read.
    std::vector<BookmarkNode> open{BookmarkNode::folder(QString())};
    std::vector<bool> titled{false};
    bool inXbel = false;
    while (!xml.atEnd() && result.problem.isEmpty()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QStringView name = xml.qualifiedName();
            if (!inXbel) {
                if (name != u"xbel") {
                    result.problem = QStringLiteral("The file is not a bookmarks file: its outermost element is "
                                                    "<%1>, not <xbel>")
                                         .arg(name);
                    break;
                }
                inXbel = true;
            } else if (name == u"folder") {
                if (open.size() > size_t(kMaxBookmarkDepth)) {
                    result.problem = QStringLiteral("The folders are nested more than %1 deep").arg(kMaxBookmarkDepth);
                    break;
                }
                open.push_back(BookmarkNode::folder(QString()));
                titled.push_back(false);
            } else if (name == u"bookmark") {
                BookmarkNode link = readBookmark(xml);
                open.back().children.append(std::move(link));
            } else if (name == u"separator") {
                open.back().children.append(BookmarkNode::separator());
                xml.skipCurrentElement();
            } else if (name == u"title" && !titled.back()) {
                open.back().title = titleText(xml);
                titled.back() = true;
            } else {
                xml.skipCurrentElement(); // <info>, <desc>, <alias>, a second <title>, the unknown
            }
        } else if (xml.isEndElement() && open.size() > 1) {
            // Every other element was read to its end where it began: this ends a folder.
            BookmarkNode done = std::move(open.back());
            open.pop_back();
            titled.pop_back();
            open.back().children.append(std::move(done));
        }
    }
    if (result.problem.isEmpty() && xml.hasError()) {
        // The reader's reason can quote the damaged bytes themselves.
        QString what;
        for (QChar c : xml.errorString())
            what += c.unicode() < 0x20 ? QChar(QChar::ReplacementCharacter) : c;
        if (what.endsWith(u'.'))
            what.chop(1);
        result.problem = QStringLiteral("The file is not well-formed XML at line %1: %2").arg(xml.lineNumber()).arg(what);
    }
    while (open.size() > 1) {
        BookmarkNode done = std::move(open.back());
        open.pop_back();
        open.back().children.append(std::move(done));
    }
    result.root = std::move(open.front());
    return result;
}

QByteArray write(const BookmarkNode& root)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDTD(QString::fromLatin1(kDoctype));
    xml.writeStartElement(QStringLiteral("xbel"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    if (writesExtras(root))
        xml.writeNamespace(kExtrasNamespace.toString(), kExtrasPrefix.toString());
    if (!root.title.isEmpty())
        writeTitle(xml, root.title);
    writeChildren(xml, root);
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

} // namespace XbelBookmarks
