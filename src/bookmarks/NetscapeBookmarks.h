#pragma once

#include "bookmarks/BookmarkTree.h"

#include <QByteArray>
#include <QStringView>

// The HTML bookmarks file that every browser exports and imports ("bookmarks.html"): a page
// headed <!DOCTYPE NETSCAPE-Bookmark-file-1> whose lists <DL> hold one entry per <DT>, a folder as
// <H3>title</H3> followed by its own <DL>, a link as <A HREF="address">title</A>, a separator as
// <HR>. The browsers write it as loose HTML, with tags left open and attributes quoted or not, so
// it is read by a forgiving tokenizer of its own rather than as XML.
namespace NetscapeBookmarks {

// What the names of the attributes that hold a link's extras begin with, in any case.
inline constexpr QStringView kExtraPrefix = u"vantrel_";

// The tree in the file's bytes. Tag and attribute names are read in any case; attribute values
// quoted with " or ' or not at all; character references (&amp; &lt; &gt; &quot; &apos; &#39;
// &nbsp; &#NNN; &#xHH;) decoded and any other "&" kept as written, as in addresses. Titles keep
// their blanks. What the tree has no room for (dates, icons, <DD> descriptions, the <H1> heading)
// is skipped. The bytes are UTF-8, as every browser writes them now; a file that is not valid UTF-8
// and does not declare UTF-8 is an older export in the Windows-1252 code page.
//
// A link's extras are the attributes of its <A> named "vantrel_" and the extra's name, in any
// case, their values read as any other's; addBookmarkExtra() says which of them are kept.
//
// Problems: a file with neither the heading nor any list is not a bookmarks file; a file that
// ends before its lists do, or in the middle of a tag, was cut short. Wrongly nested or unclosed
// tags are no problem: an entry ends where the next begins.
BookmarkRead read(const QByteArray& bytes);

// The file for the tree below `root` (the root's own title is not written: the file's heading is
// always "Bookmarks"), as the browsers write it: UTF-8, four spaces of indentation per level,
// titles and addresses with & < > " escaped, separators as <HR>. A link's extras follow its HREF
// as attributes in capitals, VANTREL_ZOOM="150", escaped as the address is; browsers pass
// over attributes they do not know.
QByteArray write(const BookmarkNode& root);

} // namespace NetscapeBookmarks
