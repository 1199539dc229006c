#pragma once

#include "bookmarks/BookmarkTree.h"

#include <QTest>

// Bookmark trees for the tests of the bookmark files: short ways to build them, an outline that
// shows where two trees part, and trees that are hard to write and read back.

Q_DECLARE_METATYPE(BookmarkNode)

using Kind = BookmarkNode::Kind;

inline BookmarkNode folder(const QString& title, const QList<BookmarkNode>& children = {})
{
    return BookmarkNode::folder(title, children);
}

inline BookmarkNode bookmark(const QString& title, const QString& url)
{
    return BookmarkNode::link(title, url);
}

inline BookmarkNode separator()
{
    return BookmarkNode::separator();
}

inline BookmarkNode rootOf(const QList<BookmarkNode>& children)
{
    return BookmarkNode::folder(QString(), children);
}

inline BookmarkNode titled(const QString& title, BookmarkNode node)
{
    node.title = title;
    return node;
}

// Characters that would not show in a failure message are written as \x{...}.
inline QString visible(const QString& text)
{
    QString out;
    for (QChar c : text)
        out += (c.unicode() < 0x20 || c.unicode() == 0x7F) ? QStringLiteral("\\x{%1}").arg(c.unicode(), 0, 16) : QString(c);
    return out;
}

// The tree one node a line, with its depth, for readable failures.
inline void outline(QString& out, const BookmarkNode& node, int level)
{
    switch (node.kind) {
    case Kind::Link:
        out += QStringLiteral("%1 link [%2] <%3>\n").arg(level).arg(visible(node.title), visible(node.url));
        return;
    case Kind::Separator:
        out += QStringLiteral("%1 separator\n").arg(level);
        return;
    case Kind::Folder:
        out += QStringLiteral("%1 folder [%2]\n").arg(level).arg(visible(node.title));
        for (const BookmarkNode& child : node.children)
            outline(out, child, level + 1);
        return;
    }
}

inline QString outline(const BookmarkNode& node)
{
    QString out;
    outline(out, node, 0);
    return out;
}

#define COMPARE_TREES(actual, expected)                                                            \
    do {                                                                                           \
        QCOMPARE(outline(actual), outline(expected));                                              \
        QVERIFY((actual) == (expected));                                                           \
    } while (false)

// ---- Trees to write ----

// Every character that needs escaping somewhere, text that looks like markup or references,
// letters from other scripts, characters outside the basic plane, and blanks at either end.
inline QString awkwardText(int n)
{
    return QStringLiteral(" %1 & < > \" ' &amp; &#39; &lt;b&gt; <!-- --> ]]> é ü ß 中文 עברית ").arg(n)
           + QString::fromUtf8("\xF0\x9F\x98\x80 \xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD ");
}

inline QString awkwardUrl(int n)
{
    return QStringLiteral("https://xn--caf-dma.example/a b/%1?q=1&r=<2>\"x\"'y'&amp;#frag%20é").arg(n)
           + QString::fromUtf8("\xF0\x9F\x98\x80");
}

// A chain of folders `depth` deep, each holding an awkward link, a separator, an empty folder
// and a link with an empty title, then the next folder. `controls` are put into every title.
inline BookmarkNode deepAwkwardTree(int depth, const QString& controls)
{
    BookmarkNode inner = folder(awkwardText(depth) + controls);
    for (int level = depth - 1; level >= 0; --level) {
        BookmarkNode outer = folder(awkwardText(level) + controls,
                                    {
                                        bookmark(controls + awkwardText(level), awkwardUrl(level)),
                                        separator(),
                                        folder(QString()),
                                        bookmark(QString(), QString()),
                                        std::move(inner),
                                    });
        inner = std::move(outer);
    }
    return rootOf({inner, bookmark(QStringLiteral("last"), QStringLiteral("about:blank"))});
}

// Folders `depth` deep, each with one link.
inline BookmarkNode deepChain(int depth)
{
    BookmarkNode inner = folder(QStringLiteral("F%1").arg(depth), {bookmark("L", "u")});
    for (int level = depth - 1; level >= 1; --level)
        inner = folder(QStringLiteral("F%1").arg(level), {bookmark("L", "u"), std::move(inner)});
    return rootOf({inner});
}

inline BookmarkNode wideTree(int folders, int linksEach)
{
    BookmarkNode root = rootOf({});
    for (int f = 0; f < folders; ++f) {
        BookmarkNode sub = folder(QStringLiteral("Folder %1 & more").arg(f));
        for (int l = 0; l < linksEach; ++l)
            sub.children.append(bookmark(QStringLiteral("Link %1 <%2>").arg(f).arg(l),
                                     QStringLiteral("https://example.com/%1/%2?a=1&b=2").arg(f).arg(l)));
        root.children.append(std::move(sub));
    }
    return root;
}

// Bytes that are nothing like a bookmarks file, with NULs and invalid UTF-8.
inline QByteArray binaryJunk()
{
    QByteArray junk("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
    for (int i = 0; i < 4096; ++i)
        junk.append(char((i * 7919 + 13) % 256));
    return junk;
}
