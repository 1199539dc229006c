#pragma once

#include "bookmarks/BookmarkExtras.h"

#include <QList>
#include <QString>

// Bookmarks as the browsers keep them: folders that hold links, separators and more folders, in
// the order the user put them. The readers of the browsers' bookmark files all give this tree, and
// the writers take it, so that bookmarks move between browsers and Vantrel in any direction. Only
// what every format can hold is kept: dates, icons, descriptions and the like are left behind. A
// link's extras are the exception: only the HTML and XBEL files carry them, for Vantrel's own use.
struct BookmarkNode
{
    enum class Kind { Folder, Link, Separator };

    Kind kind = Kind::Folder;
    QString title;                // as the browser showed it, blanks at either end included
    QString url;                  // links only, as written in the file
    QList<BookmarkNode> children; // folders only
    BookmarkExtras extras = {};   // links only: Vantrel's own values, which other browsers pass over

    bool operator==(const BookmarkNode&) const = default;

    static BookmarkNode folder(const QString& title, const QList<BookmarkNode>& children = {})
    {
        return {Kind::Folder, title, QString(), children, {}};
    }
    static BookmarkNode link(const QString& title, const QString& url, const BookmarkExtras& extras = {})
    {
        return {Kind::Link, title, url, {}, extras};
    }
    static BookmarkNode separator() { return {Kind::Separator, QString(), QString(), {}, {}}; }

    // How many links, folders and separators there are below this node, at any depth.
    qsizetype linkCount() const { return count(Kind::Link); }
    qsizetype folderCount() const { return count(Kind::Folder); }
    qsizetype separatorCount() const { return count(Kind::Separator); }

    // How many folders deep the tree below goes: 0 when this node holds no folder.
    int depth() const
    {
        int deepest = 0;
        for (const BookmarkNode& child : children)
            if (child.kind == Kind::Folder)
                deepest = qMax(deepest, 1 + child.depth());
        return deepest;
    }

private:
    qsizetype count(Kind wanted) const
    {
        qsizetype n = 0;
        for (const BookmarkNode& child : children)
            n += (child.kind == wanted ? 1 : 0) + child.count(wanted);
        return n;
    }
};

// Text from a file that can hold half of a surrogate pair where no character can stand (JSON's
// "\ud800", a database kept in UTF-16): each half becomes the replacement character, as a damaged
// byte of UTF-8 does, so that the name can be written to any file.
inline QString wholeCharacters(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

// Copying, comparing and freeing the tree go down it one call per level, so a file that nests
// its folders deeper than any browser would (a damaged or hostile one) could use up the stack.
// Readers stop at this depth, with a problem, keeping what they read above it.
inline constexpr int kMaxBookmarkDepth = 1000;

// What a reader found in a file. `root` is a folder standing for the whole file; its children are
// the file's top level. `problem` is empty when the file was read as a whole; otherwise it is one
// sentence saying what is wrong, and `root` holds what could be read before (or despite) it.
struct BookmarkRead
{
    BookmarkNode root;
    QString problem;

    bool ok() const { return problem.isEmpty(); }
};
