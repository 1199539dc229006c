#pragma once

#include <QList>
#include <QString>

#include <vector>

// The pages of the three trees (Favorites, lists, history), found by any words of their names and
// addresses, in any order, ignoring case and accents. Each entry's name and address are folded
// once, when the index is made (lower case, accents taken off), so that a search is a plain
// search for the folded words in folded text. No widget, no thread of its own: it is made away
// from the window and handed over whole.
class SearchIndex
{
public:
    enum class Tree { Favorites, Lists, History };

    struct Entry
    {
        Tree tree = Tree::Favorites;
        QString key;     // the node's key in its tree
        QString name;
        QString address;
        QString place;   // the folder path, the list's name, or the window whose history it is
        qint64 recency = 0; // history: later pages higher
    };

    struct Result
    {
        QList<int> best; // entry numbers, best first, at most the limit asked for
        int found = 0;   // how many matched in all
    };

    SearchIndex() = default;
    explicit SearchIndex(QList<Entry> entries);

    int size() const { return int(m_entries.size()); }
    const Entry& entry(int i) const { return m_entries.at(i); }

    // The entries of `tree` that hold every word of `query`, best first: a word in the name before
    // one in the address, a whole word before the start of one before a part of one, and for the
    // history, later pages before earlier ones. `within`, when given, holds the entries that matched a
    // query this one only adds letters to: only those are looked at again.
    Result find(const QString& query, Tree tree, int limit, const std::vector<int>* within = nullptr,
                std::vector<int>* matched = nullptr) const;

    // The text as the index compares it: case folded, accents and other marks taken off.
    static QString fold(QStringView text);
    // The folded words of a query.
    static QStringList words(const QString& query);

    // About how much memory the index holds, in bytes.
    qint64 memoryBytes() const;

private:
    int score(int i, const QStringList& words) const;

    QList<Entry> m_entries;
    std::vector<QString> m_folded;    // name, U+001F, address
    std::vector<int> m_nameLength;    // where the name ends in m_folded
};
