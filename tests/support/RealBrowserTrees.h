#pragma once

#include "BookmarkTrees.h"

// The bookmarks that real Firefox ESR and Chromium wrote in tests/data/browsers (its README says
// how they were made), as the readers are to give them back.

// A file of tests/data/browsers.
inline QString browserFile(const QString& name)
{
    return QStringLiteral(VANTREL_TEST_DATA "/browsers/") + name;
}

inline const QString kParty = QString::fromUtf8("\xF0\x9F\x8E\x89"); // the emoji in one title

// ---- What Firefox ESR made of imported-source.html ----

inline QList<BookmarkNode> firefoxMenu()
{
    return {
        bookmark("Menu First", "https://example.com/menu-first"),
        bookmark(QStringLiteral("Café 中文 ") + kParty, "https://example.org/caf%C3%A9?q=%E4%B8%AD%E6%96%87"),
        bookmark("Padded title", "https://example.org/padded"), // Firefox trimmed the blanks
        bookmark("", "https://example.net/empty-title"),
        separator(),
        bookmark("Punycode host", "http://xn--bcher-kva.example/"),
        bookmark("Query & escaped ampersands", "https://example.com/search?a=1&b=2&c=%26d"),
        bookmark("Query with raw & in source", "https://example.com/raw?x=1&y=2"),
        bookmark("Tagged <b> \"quoted\" 'single'", "https://example.com/tagged"),
        bookmark("Most Visited Query", "place:sort=8&maxResults=10"),
        bookmark("Bookmarklet", "javascript:alert(%22hi%22)"),
        folder("Folder <angle> & \"quotes\"",
               {bookmark("Inside odd folder", "https://example.com/inside-odd-folder")}),
        folder("Empty Folder"),
    };
}

inline BookmarkNode firefoxToolbar()
{
    return folder(
        "Bookmarks Toolbar",
        {
            bookmark("Example Home", "https://example.com/"),
            folder("Nested Folder",
                   {
                       bookmark("Level 1", "https://example.com/level1"),
                       separator(),
                       folder("Deeper", {bookmark("Level 2", "https://example.com/level2?tag=alpha")}),
                       bookmark("FTP file", "ftp://ftp.example.com/pub/file.txt"),
                   }),
            bookmark("After Folder", "https://example.com/after-folder"),
        });
}

inline BookmarkNode firefoxOther()
{
    return folder("Other Bookmarks", {
                                         bookmark("Other One", "https://example.com/other-1"),
                                         bookmark("Other Two", "https://example.com/other-2#frag"),
                                     });
}

// Firefox's own bookmarks.html: the menu's entries at the top, then the toolbar and the other
// bookmarks as the last two folders; the mobile folder and the tags are not written.
inline BookmarkNode firefoxExportTree()
{
    BookmarkNode root = rootOf(firefoxMenu());
    root.children << firefoxToolbar() << firefoxOther();
    return root;
}

// The same bookmarks from the profile's database, each top folder under its own name.
inline BookmarkNode firefoxDatabaseTree()
{
    return rootOf({folder("Bookmarks Menu", firefoxMenu()), firefoxToolbar(), firefoxOther()});
}

// The database copied while Firefox ran, read with its -wal: three changes on top.
inline BookmarkNode firefoxRunningTree()
{
    BookmarkNode tree = firefoxDatabaseTree();
    tree.children[1].children.prepend(bookmark("Running Two", "https://example.com/running-2"));
    tree.children[2].children[0].title = QStringLiteral("Other One (renamed while running)");
    tree.children[2].children.append(
        folder("Added While Running", {bookmark("Running One", "https://example.com/running-1")}));
    return tree;
}

// ---- What Chromium wrote ----

// Profile Default: the import put the source's menu and other bookmarks into "Imported", dropping
// separators, the place: query and the empty folder; the empty roots are left out by the reader.
inline BookmarkNode chromiumDefaultTree()
{
    return rootOf({folder(
        "Bookmarks bar",
        {
            bookmark("Example Home", "https://example.com/"),
            folder("Nested Folder",
                   {
                       bookmark("Level 1", "https://example.com/level1"),
                       folder("Deeper", {bookmark("Level 2", "https://example.com/level2?tag=alpha")}),
                       bookmark("FTP file", "ftp://ftp.example.com/pub/file.txt"),
                   }),
            bookmark("After Folder", "https://example.com/after-folder"),
            folder(
                "Imported",
                {
                    bookmark("Menu First", "https://example.com/menu-first"),
                    bookmark(QStringLiteral("Café 中文 ") + kParty,
                             "https://example.org/caf%C3%A9?q=%E4%B8%AD%E6%96%87"),
                    bookmark("   Padded title   ", "https://example.org/padded"), // Chromium kept the blanks
                    bookmark("", "https://example.net/empty-title"),
                    bookmark("Punycode host", "http://xn--bcher-kva.example/"),
                    bookmark("Query & escaped ampersands", "https://example.com/search?a=1&b=2&c=%26d"),
                    bookmark("Query with raw & in source", "https://example.com/raw?x=1&y=2"),
                    bookmark("Tagged <b> \"quoted\" 'single'", "https://example.com/tagged"),
                    bookmark("Bookmarklet", "javascript:alert(%22hi%22)"),
                    folder("Folder <angle> & \"quotes\"",
                           {bookmark("Inside odd folder", "https://example.com/inside-odd-folder")}),
                    folder("Other Bookmarks",
                           {
                               bookmark("Other One", "https://example.com/other-1"),
                               bookmark("Other Two", "https://example.com/other-2#frag"),
                           }),
                }),
        })});
}

// Profile 1: all three roots hold something.
inline BookmarkNode chromiumProfile1Tree()
{
    return rootOf({
        folder("Bookmarks bar",
               {
                   bookmark("Bar Link", "https://example.com/bar"),
                   folder("Bar Folder",
                          {bookmark("Nested Link", "https://example.com/nested"), folder("Empty Inner")}),
               }),
        folder("Other bookmarks",
               {
                   bookmark("Other Link & more", "https://example.com/other?a=1&b=2"),
                   folder("Other Folder",
                          {bookmark(QStringLiteral("日本語 <title>"), "https://example.jp/%E6%97%A5")}),
               }),
        folder("Mobile bookmarks", {bookmark("Mobile Link", "https://m.example.com/")}),
    });
}

// Chromium's HTML export keeps the bookmark bar as a folder but writes the children of the other
// two roots straight into the top list.
inline BookmarkNode asChromiumExportsIt(const BookmarkNode& jsonRoot)
{
    BookmarkNode root = rootOf({});
    for (const BookmarkNode& top : jsonRoot.children) {
        if (top.title == QLatin1String("Bookmarks bar"))
            root.children << top;
        else
            root.children << top.children;
    }
    return root;
}
