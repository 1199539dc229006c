#pragma once

#include "bookmarks/BookmarkTree.h"

#include <QByteArray>

class QXmlStreamWriter;

// XBEL, the XML bookmarks file of the desktop's file managers and of several browsers:
// <xbel version="1.0"> holding <folder> (its name in a <title>), <bookmark href="address"> (its
// name in a <title>) and <separator/>, in any nesting. A link's extras are attributes of its
// <bookmark> in Vantrel's own namespace, https://vantrel.org/xbel/page: vantrel:zoom="150".
namespace XbelBookmarks {

// The tree in the file's bytes. The <title> of <xbel> itself is the root's title. <info>, <desc>,
// <alias> and elements the format does not know are skipped with all they hold. XML that is not
// well-formed gives a problem naming the line and what the XML reader found wrong there; the
// folders and bookmarks before that point are kept. Attributes in the extras' namespace, under
// any prefix, are a link's extras, as addBookmarkExtra() keeps them.
BookmarkRead read(const QByteArray& bytes);

// The file for the tree, indented by the XML writer: the XML declaration, the format's DOCTYPE and
// one <title> for every folder and bookmark (for the root only when it has one). Characters XML
// cannot hold (control characters other than tab, line feed and carriage return) are left out; a
// carriage return is written as a reference, so that it is read back as it was. The extras'
// namespace is declared on <xbel>, as "vantrel", only when some link has extras to write.
QByteArray write(const BookmarkNode& root);

// The format's DOCTYPE line, as every XBEL file Vantrel writes begins.
inline constexpr char kDoctype[] = "<!DOCTYPE xbel PUBLIC \"+//IDN python.org//DTD XML Bookmark Exchange Language "
                                   "1.0//EN//XML\" \"http://pyxml.sourceforge.net/topics/dtds/xbel.dtd\">";

// Writes text as XBEL holds it: without what XML cannot hold, a carriage return as a reference so
// that it reads back as it was.
void writeText(QXmlStreamWriter& xml, const QString& text);

// The text without what XML cannot hold, even as a reference: control characters other than tab,
// line feed and carriage return, U+FFFE and U+FFFF, and halves of surrogate pairs.
QString xmlCharacters(const QString& text);

} // namespace XbelBookmarks
