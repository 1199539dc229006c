#pragma once

#include "BookmarkTrees.h"

// Bookmark files as the browsers write them, each with the tree it holds.

// An export in the style of the browsers that write uppercase tags, an <H1> of their own and
// <DD> descriptions after links and folder headings.
inline constexpr char kUppercaseExport[] = R"HTML(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<!-- This is an automatically generated file.
     It will be read and overwritten.
     DO NOT EDIT! -->
<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">
<meta http-equiv="Content-Security-Policy"
      content="default-src 'self'; script-src 'none'; img-src data: *; object-src 'none'"></meta>
<TITLE>Bookmarks</TITLE>
<H1>Bookmarks Menu</H1>

<DL><p>
    <DT><A HREF="https://start.example.com/" ADD_DATE="1700000000" LAST_MODIFIED="1700000001">Start page</A>
    <DT><H3 ADD_DATE="1700000002" LAST_MODIFIED="1700000500" PERSONAL_TOOLBAR_FOLDER="true">Bookmarks Toolbar</H3>
    <DL><p>
        <DT><A HREF="https://www.example.org/search?q=cats&amp;page=2" ADD_DATE="1700000100" LAST_MODIFIED="1700000100" ICON_URI="https://www.example.org/favicon.ico" ICON="data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==">Cats &amp; dogs</A>
        <DT><A HREF="https://shop.example.com/cart?item=7&qty=1&lt=3" ADD_DATE="1700000200">  Shop with blanks  </A>
        <DD>Bought the kettle here
        <DT><H3 ADD_DATE="1700000300" LAST_MODIFIED="1700000400">Reading</H3>
        <DD>Things to read later
        <DL><p>
            <DT><A HREF="https://xn--bcher-kva.example/" ADD_DATE="1700000310">Bücher</A>
            <DT><A HREF="https://example.net/a%20b/caf%C3%A9?x=%2F&y=%26" ADD_DATE="1700000320"></A>
            <HR>
            <DT><A HREF="https://example.net/quote" ADD_DATE="1700000330">&quot;Quoted&quot; &lt;tag&gt; &#39;single&#39; &apos;apos&apos; non&nbsp;breaking &#233;t&#xE9; &#x1F600;</A>
        </DL><p>
    </DL><p>
    <HR>
    <DT><H3 ADD_DATE="1700000600" LAST_MODIFIED="1700000700" UNFILED_BOOKMARKS_FOLDER="true">Other Bookmarks</H3>
    <DL><p>
        <DT><A HREF="https://example.com/" ADD_DATE="1700000800" SHORTCUTURL="ex" TAGS="work,home">Example</A>
        <DT><H3 ADD_DATE="1700000900" LAST_MODIFIED="1700000900">Empty</H3>
        <DL><p>
        </DL><p>
    </DL><p>
</DL>
)HTML";

inline BookmarkNode uppercaseExportTree()
{
    return rootOf({
        bookmark("Start page", "https://start.example.com/"),
        folder("Bookmarks Toolbar",
               {
                   bookmark("Cats & dogs", "https://www.example.org/search?q=cats&page=2"),
                   bookmark("  Shop with blanks  ", "https://shop.example.com/cart?item=7&qty=1&lt=3"),
                   folder("Reading",
                          {
                              bookmark(QStringLiteral("Bücher"), "https://xn--bcher-kva.example/"),
                              bookmark("", "https://example.net/a%20b/caf%C3%A9?x=%2F&y=%26"),
                              separator(),
                              bookmark(QStringLiteral("\"Quoted\" <tag> 'single' 'apos' non\u00A0breaking été ")
                                       + QString::fromUtf8("\xF0\x9F\x98\x80"),
                                   "https://example.net/quote"),
                          }),
               }),
        separator(),
        folder("Other Bookmarks",
               {
                   bookmark("Example", "https://example.com/"),
                   folder("Empty"),
               }),
    });
}

// An export with lowercase tags and attributes quoted with ', with " or not at all.
inline constexpr char kLowercaseExport[] = R"HTML(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<!-- This is an automatically generated file.
     It will be read and overwritten.
     DO NOT EDIT! -->
<meta http-equiv="Content-Type" content="text/html; charset=UTF-8">
<title>Bookmarks</title>
<h1>Bookmarks</h1>
<dl><p>
    <dt><h3 add_date="1690000000" last_modified="1690000300" personal_toolbar_folder="true">Bookmarks bar</h3>
    <dl><p>
        <dt><a href='https://news.example.com/?a=1&b=2' add_date=1690000001 icon="data:image/png;base64,iVBORw0KGgo=">News &amp; weather</a>
        <dt><a add_date=1690000002 href=https://example.org/path?x=1>Unquoted</a>
        <dt><a href = "https://spaced.example/" >Spaced</a>
        <dt><h3 add_date="1690000003">Empty folder</h3>
        <dl><p>
        </dl><p>
    </dl><p>
    <dt><a href="https://example.com/%E2%82%AC">Euro €</a>
</dl><p>
)HTML";

inline BookmarkNode lowercaseExportTree()
{
    return rootOf({
        folder("Bookmarks bar",
               {
                   bookmark("News & weather", "https://news.example.com/?a=1&b=2"),
                   bookmark("Unquoted", "https://example.org/path?x=1"),
                   bookmark("Spaced", "https://spaced.example/"),
                   folder("Empty folder"),
               }),
        bookmark(QStringLiteral("Euro €"), "https://example.com/%E2%82%AC"),
    });
}

inline constexpr char kXbelFile[] = R"XML(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xbel PUBLIC "+//IDN python.org//DTD XML Bookmark Exchange Language 1.0//EN//XML" "http://pyxml.sourceforge.net/topics/dtds/xbel.dtd">
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
 <title>My bookmarks</title>
 <info>
  <metadata owner="http://www.freedesktop.org">
   <bookmark:applications>
    <bookmark:application name="Files" exec="files %u" modified="2023-01-01T00:00:00Z" count="2"/>
   </bookmark:applications>
  </metadata>
 </info>
 <folder folded="no">
  <title>Work</title>
  <desc>Pages for the office</desc>
  <bookmark href="https://intranet.example.com/wiki?page=Main&amp;lang=en" added="2023-01-02T00:00:00Z">
   <title>Wiki &amp; notes</title>
   <info><metadata owner="http://www.example.org"><icon name="text-html"/></metadata></info>
   <desc>The team wiki</desc>
  </bookmark>
  <separator/>
  <folder folded="yes"><title>Deep</title><bookmark href="file:///home/user/Documents/"><title>Documents</title></bookmark></folder>
  <unknown><bookmark href="https://hidden.example/"><title>Inside an unknown element</title></bookmark></unknown>
 </folder>
 <alias ref="work"/>
 <bookmark href="https://example.org/caf%C3%A9"><title>  Caf&#233; &lt;&gt; &quot;x&quot;  </title></bookmark>
</xbel>
)XML";

inline BookmarkNode xbelFileTree()
{
    BookmarkNode root = rootOf({
        folder("Work",
               {
                   bookmark("Wiki & notes", "https://intranet.example.com/wiki?page=Main&lang=en"),
                   separator(),
                   folder("Deep", {bookmark("Documents", "file:///home/user/Documents/")}),
               }),
        bookmark(QStringLiteral("  Café <> \"x\"  "), "https://example.org/caf%C3%A9"),
    });
    root.title = "My bookmarks";
    return root;
}

inline constexpr char kChromiumFile[] = R"JSON({
   "checksum": "0123456789abcdef0123456789abcdef",
   "roots": {
      "bookmark_bar": {
         "children": [ {
            "date_added": "13300000000000000",
            "date_last_used": "0",
            "guid": "00000000-0000-4000-a000-000000000001",
            "id": "5",
            "meta_info": { "power_bookmark_meta": "" },
            "name": "Caf\u00e9 \"Central\"",
            "type": "url",
            "url": "https:\/\/example.com\/caf%C3%A9?a=1&b=2"
         }, {
            "children": [ {
               "date_added": "13300000000000001",
               "guid": "00000000-0000-4000-a000-000000000002",
               "id": "7",
               "name": "Tab\tand back\\slash \ud83d\ude00",
               "type": "url",
               "url": "https:\/\/xn--bcher-kva.example\/"
            }, {
               "children": [ ],
               "id": "8",
               "name": "",
               "type": "folder"
            } ],
            "date_added": "13300000000000002",
            "date_modified": "13300000000000003",
            "guid": "00000000-0000-4000-a000-000000000003",
            "id": "6",
            "name": "Folder \/ sub",
            "type": "folder"
         }, {
            "id": "9",
            "name": "Of a kind the reader does not know",
            "type": "note"
         } ],
         "id": "1",
         "name": "Bookmarks bar",
         "type": "folder"
      },
      "other": {
         "children": [ {
            "id": "10",
            "name": "  Blanks kept  ",
            "type": "url",
            "url": "http:\/\/other.example\/"
         } ],
         "id": "2",
         "name": "Other bookmarks",
         "type": "folder"
      },
      "synced": {
         "children": [ {
            "id": "11",
            "name": "Timetable",
            "type": "url",
            "url": "https:\/\/m.transit.example\/lines\/12"
         } ],
         "id": "3",
         "name": "Mobile bookmarks",
         "type": "folder"
      }
   },
   "version": 1
}
)JSON";

inline BookmarkNode chromiumFileTree()
{
    return rootOf({
        folder("Bookmarks bar",
               {
                   bookmark(QStringLiteral("Café \"Central\""), "https://example.com/caf%C3%A9?a=1&b=2"),
                   folder("Folder / sub",
                          {
                              bookmark(QStringLiteral("Tab\tand back\\slash ") + QString::fromUtf8("\xF0\x9F\x98\x80"),
                                   "https://xn--bcher-kva.example/"),
                              folder(""),
                          }),
               }),
        folder("Other bookmarks", {bookmark("  Blanks kept  ", "http://other.example/")}),
        folder("Mobile bookmarks", {bookmark("Timetable", "https://m.transit.example/lines/12")}),
    });
}
