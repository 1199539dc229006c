#include "bookmarks/NetscapeBookmarks.h"

#include "bookmarks/HtmlReferences.h"
#include "core/TextCodec.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace NetscapeBookmarks {

namespace {

using References::decoded;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool named(QStringView name, QStringView wanted)
{
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
}

// Whether the top of the file declares its characters as UTF-8 (the META tag every browser
// writes), so that a few damaged bytes cost a character each, not the reading of the whole file.
bool declaresUtf8(const QByteArray& bytes)
{
    const QByteArray head = bytes.left(8192).toLower();
    for (qsizetype at = head.indexOf("charset"); at >= 0; at = head.indexOf("charset", at + 1)) {
        qsizetype i = at + 7;
        while (i < head.size() && (head[i] == ' ' || head[i] == '=' || head[i] == '"' || head[i] == '\''))
            ++i;
        const QByteArrayView value = QByteArrayView(head).sliced(i);
        if (value.startsWith("utf-8") || value.startsWith("utf8"))
            return true;
    }
    return false;
}

QString decodeFile(const QByteArray& bytes)
{
    if (!declaresUtf8(bytes))
        return TextCodec::decode(bytes);
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF"))
        view = view.sliced(3);
    return QString::fromUtf8(view);
}

// Walks the file once, from tag to tag. The folders whose lists are open are kept on a stack, the
// innermost last; a folder goes into its parent when its list closes, or at the end of the file.
class Reader
{
public:
    explicit Reader(QStringView text)
        : m_text(text)
    {
        m_open.push_back(BookmarkNode::folder(QString()));
    }

    BookmarkRead run()
    {
        const qsizetype n = m_text.size();
        while (m_pos < n && !m_stopped) {
            const qsizetype lt = m_text.indexOf(u'<', m_pos);
            const qsizetype textEnd = lt < 0 ? n : lt;
            if (textEnd > m_pos)
                text(m_text.sliced(m_pos, textEnd - m_pos));
            m_pos = textEnd;
            if (m_pos < n && !markup()) {
                text(m_text.sliced(m_pos, 1)); // a "<" that starts no tag stands for itself
                ++m_pos;
            }
        }
        finishEntry();
        flushHeading();

        BookmarkRead result;
        if (!m_sawDoctype && !m_sawList) {
            result.problem = m_text.trimmed().isEmpty()
                                 ? QStringLiteral("The file is not a bookmarks file: it is empty")
                                 : QStringLiteral("The file is not a bookmarks file: it has neither the "
                                                  "bookmarks heading nor a list of bookmarks");
        } else if (!m_problem.isEmpty()) {
            result.problem = m_problem;
        } else if (m_open.size() > 1) {
            result.problem = QStringLiteral("The file ends inside a folder");
        } else if (m_rootListOpen) {
            result.problem = QStringLiteral("The file ends inside its list of bookmarks");
        } else if (m_cutInTag) {
            result.problem = QStringLiteral("The file ends in the middle of a tag");
        } else if (m_cutInComment) {
            result.problem = QStringLiteral("The file ends inside a comment");
        }
        while (m_open.size() > 1)
            closeFolder();
        result.root = std::move(m_open.front());
        return result;
    }

private:
    enum class Collecting { Nothing, LinkTitle, FolderTitle };

    // What of a start tag's attributes a link keeps.
    struct Attributes
    {
        std::optional<QString> href;
        BookmarkExtras extras;
    };

    // At a "<": reads the tag, comment or declaration it starts and acts on it. False when the
    // "<" starts none of them.
    bool markup()
    {
        const qsizetype n = m_text.size();
        if (m_pos + 1 >= n)
            return false;
        const QChar next = m_text[m_pos + 1];
        if (next == u'!' && m_text.sliced(m_pos).startsWith(u"<!--")) {
            const qsizetype end = m_text.indexOf(u"-->", m_pos + 4);
            if (end < 0) {
                m_cutInComment = true;
                m_pos = n;
            } else {
                m_pos = end + 3;
            }
            return true;
        }
        if (next == u'!' || next == u'?') { // <!DOCTYPE ...>, <?xml ...?>
            const qsizetype end = m_text.indexOf(u'>', m_pos + 2);
            const QStringView inside = m_text.sliced(m_pos + 2, (end < 0 ? n : end) - m_pos - 2);
            if (inside.contains(u"NETSCAPE-Bookmark-file", Qt::CaseInsensitive))
                m_sawDoctype = true;
            skipTo(end);
            return true;
        }
        if (next == u'/') {
            if (m_pos + 2 >= n || !isAsciiLetter(m_text[m_pos + 2]))
                return false;
            m_pos += 2;
            const QStringView name = tagName();
            const qsizetype end = m_text.indexOf(u'>', m_pos);
            skipTo(end);
            if (end >= 0)
                endTag(name);
            return true;
        }
        if (!isAsciiLetter(next))
            return false;
        ++m_pos;
        const QStringView name = tagName();
        Attributes attributes = this->attributes();
        if (!m_cutInTag)
            startTag(name, std::move(attributes));
        return true;
    }

    // Moves past the ">" at `end`; to the end of the file, cut short, when there is none.
    void skipTo(qsizetype end)
    {
        if (end < 0) {
            m_cutInTag = true;
            m_pos = m_text.size();
        } else {
            m_pos = end + 1;
        }
    }

    QStringView tagName()
    {
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && !isBlank(m_text[m_pos]) && m_text[m_pos] != u'/' && m_text[m_pos] != u'>')
            ++m_pos;
        return m_text.sliced(start, m_pos - start);
    }

    // Reads a start tag's attributes and its closing ">".
    Attributes attributes()
    {
        const qsizetype n = m_text.size();
        Attributes read;
        for (;;) {
            while (m_pos < n && (isBlank(m_text[m_pos]) || m_text[m_pos] == u'/'))
                ++m_pos;
            if (m_pos >= n) {
                m_cutInTag = true;
                return read;
            }
            if (m_text[m_pos] == u'>') {
                ++m_pos;
                return read;
            }
            const qsizetype nameStart = m_pos++; // the first character is the name's, even a "="
            while (m_pos < n && !isBlank(m_text[m_pos]) && m_text[m_pos] != u'/' && m_text[m_pos] != u'>'
                   && m_text[m_pos] != u'=')
                ++m_pos;
            const QStringView name = m_text.sliced(nameStart, m_pos - nameStart);
            while (m_pos < n && isBlank(m_text[m_pos]))
                ++m_pos;
            QStringView value;
            if (m_pos < n && m_text[m_pos] == u'=') {
                ++m_pos;
                while (m_pos < n && isBlank(m_text[m_pos]))
                    ++m_pos;
                if (m_pos < n && (m_text[m_pos] == u'"' || m_text[m_pos] == u'\'')) {
                    const qsizetype end = m_text.indexOf(m_text[m_pos], m_pos + 1);
                    if (end < 0) {
                        m_cutInTag = true;
                        m_pos = n;
                        return read;
                    }
                    value = m_text.sliced(m_pos + 1, end - m_pos - 1);
                    m_pos = end + 1;
                } else {
                    const qsizetype start = m_pos;
                    while (m_pos < n && !isBlank(m_text[m_pos]) && m_text[m_pos] != u'>')
                        ++m_pos;
                    value = m_text.sliced(start, m_pos - start);
                }
            }
            if (!read.href && named(name, u"href")) // as in HTML, the first of a repeated attribute counts
                read.href = decoded(value);
            else if (name.startsWith(kExtraPrefix, Qt::CaseInsensitive) && read.extras.size() < kMaxBookmarkExtras)
                addBookmarkExtra(read.extras, name.sliced(kExtraPrefix.size()), decoded(value));
        }
    }

    void text(QStringView raw)
    {
        if (m_collecting != Collecting::Nothing)
            m_collected += decoded(raw);
    }

    void startTag(QStringView name, Attributes attributes)
    {
        if (named(name, u"dl")) {
            openList();
        } else if (named(name, u"dt")) {
            finishEntry();
            flushHeading();
        } else if (named(name, u"dd")) {
            finishEntry(); // a description: its text is not collected, a heading before it stays
        } else if (named(name, u"h3")) {
            finishEntry();
            flushHeading();
            m_collecting = Collecting::FolderTitle;
        } else if (named(name, u"a")) {
            finishEntry();
            flushHeading();
            m_collecting = Collecting::LinkTitle;
            m_href = attributes.href.value_or(QString());
            m_extras = std::move(attributes.extras);
        } else if (named(name, u"hr")) {
            finishEntry();
            flushHeading();
            m_open.back().children.append(BookmarkNode::separator());
        }
        // Any other tag (<p>, <TITLE>, <H1>, formatting inside a title) changes nothing; the text
        // around it is collected as before.
    }

    void endTag(QStringView name)
    {
        if (named(name, u"dl"))
            closeList();
        else if (named(name, u"a") || named(name, u"h3"))
            finishEntry();
    }

    // Ends the title being collected: a link is added, a folder heading waits for its list.
    void finishEntry()
    {
        switch (m_collecting) {
        case Collecting::Nothing:
            return;
        case Collecting::LinkTitle:
            m_open.back().children.append(BookmarkNode::link(m_collected, m_href, m_extras));
            break;
        case Collecting::FolderTitle:
            m_heading = m_collected;
            break;
        }
        m_collecting = Collecting::Nothing;
        m_collected.clear();
        m_href.clear();
        m_extras.clear();
    }

    // A heading whose list never came is an empty folder.
    void flushHeading()
    {
        if (!m_heading)
            return;
        if (roomForFolder())
            m_open.back().children.append(BookmarkNode::folder(*m_heading));
        m_heading.reset();
    }

    bool roomForFolder()
    {
        if (m_open.size() <= size_t(kMaxBookmarkDepth))
            return true;
        m_problem = QStringLiteral("The folders are nested more than %1 deep").arg(kMaxBookmarkDepth);
        m_stopped = true;
        return false;
    }

    // A <DL>: the first one (with no heading before it) is the file's own list; any other one is
    // the list of the folder whose heading came before it, or of an untitled folder.
    void openList()
    {
        finishEntry();
        m_sawList = true;
        if (!m_heading && m_open.size() == 1 && !m_rootListOpen) {
            m_rootListOpen = true;
            return;
        }
        if (roomForFolder())
            m_open.push_back(BookmarkNode::folder(m_heading.value_or(QString())));
        m_heading.reset();
    }

    void closeList()
    {
        finishEntry();
        flushHeading();
        if (m_open.size() > 1)
            closeFolder();
        else
            m_rootListOpen = false; // a </DL> more than there were <DL> changes nothing else
    }

    void closeFolder()
    {
        BookmarkNode done = std::move(m_open.back());
        m_open.pop_back();
        m_open.back().children.append(std::move(done));
    }

    QStringView m_text;
    qsizetype m_pos = 0;
    std::vector<BookmarkNode> m_open; // the root, then the folders whose lists are open
    bool m_rootListOpen = false;
    Collecting m_collecting = Collecting::Nothing;
    QString m_collected;
    QString m_href;
    BookmarkExtras m_extras;
    std::optional<QString> m_heading; // the title of a folder whose list has not begun
    bool m_sawDoctype = false;
    bool m_sawList = false;
    bool m_cutInTag = false;
    bool m_cutInComment = false;
    bool m_stopped = false;
    QString m_problem;
};

} // namespace

BookmarkRead read(const QByteArray& bytes)
{
    const QString text = decodeFile(bytes);
    return Reader(text).run();
}

} // namespace NetscapeBookmarks
