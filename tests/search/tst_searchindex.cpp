#include "search/SearchIndex.h"

#include <QTest>

// Pages found by any words of their names and addresses, best first, without a widget.
class TestSearchIndex : public QObject
{
    Q_OBJECT

    using Tree = SearchIndex::Tree;

    static SearchIndex::Entry fav(const QString& name, const QString& address, const QString& place = QString())
    {
        return {Tree::Favorites, place.isEmpty() ? name : place + u'/' + name, name, address, place, 0};
    }
    static QStringList names(const SearchIndex& index, const SearchIndex::Result& result)
    {
        QStringList names;
        for (const int i : result.best)
            names << index.entry(i).name;
        return names;
    }
    static QStringList found(const SearchIndex& index, const QString& query, Tree tree = Tree::Favorites)
    {
        return names(index, index.find(query, tree, 100));
    }

private slots:
    void anyWordsInAnyOrderIgnoringCaseAndAccents()
    {
        const SearchIndex index({fav("Café Müller Opening Hours", "https://cafe-mueller.example/hours"),
                                 fav("Debian News", "https://www.debian.org/News/"),
                                 fav("Crème brûlée recipe", "https://recipes.example/creme-brulee")});
        QCOMPARE(found(index, "cafe"), QStringList{"Café Müller Opening Hours"});
        QCOMPARE(found(index, "HOURS müller"), QStringList{"Café Müller Opening Hours"});
        QCOMPARE(found(index, "muller hours"), QStringList{"Café Müller Opening Hours"});
        QCOMPARE(found(index, "brulee CREME"), QStringList{"Crème brûlée recipe"});
        // A word of the address finds it too; every word must be somewhere.
        QCOMPARE(found(index, "debian.org news"), QStringList{"Debian News"});
        QCOMPARE(found(index, "debian recipe"), QStringList{});
        QCOMPARE(found(index, "   "), QStringList{});
        QCOMPARE(SearchIndex::fold(QStringLiteral("Ærøskøbing ÉCOLE straße")), QStringLiteral("ærøskøbing ecole strasse"));
    }
    void theNameComesBeforeTheAddressAndWholeWordsBeforeParts()
    {
        const SearchIndex index({fav("Weather", "https://news.example/weather"),
                                 fav("Newsletter archive", "https://mail.example/"),
                                 fav("Local news", "https://local.example/"),
                                 fav("Newspaper", "https://paper.example/")});
        // "Local news": the whole word in the name; then the start of a word in the name (the
        // shorter name first); last the word only in the address.
        QCOMPARE(found(index, "news"), (QStringList{"Local news", "Newspaper", "Newsletter archive", "Weather"}));
        const SearchIndex parts({fav("Mainstream", "https://a.example/"), fav("Stream", "https://b.example/"),
                                 fav("Streaming", "https://c.example/")});
        QCOMPARE(found(parts, "stream"), (QStringList{"Stream", "Streaming", "Mainstream"}));
    }
    void theHistoryShowsLaterPagesFirstAndEachTreeItsOwn()
    {
        const SearchIndex index({{Tree::History, "k1", "Report", "https://r.example/1", "Internet Explorer 1", 1},
                                 {Tree::History, "k2", "Report", "https://r.example/2", "Internet Explorer 1", 3},
                                 {Tree::History, "k3", "Report", "https://r.example/3", "Internet Explorer 2", 2},
                                 {Tree::Lists, "k4", "Report", "https://r.example/4", "Wall", 0}});
        const SearchIndex::Result history = index.find("report", Tree::History, 10);
        QCOMPARE(history.found, 3);
        QStringList keys;
        for (const int i : history.best)
            keys << index.entry(i).key;
        QCOMPARE(keys, (QStringList{"k2", "k3", "k1"}));
        QCOMPARE(index.find("report", Tree::Lists, 10).found, 1);
        QCOMPARE(index.find("report", Tree::Favorites, 10).found, 0);
    }
    void aLimitKeepsTheBestAndCountsTheRest()
    {
        QList<SearchIndex::Entry> entries;
        for (int i = 0; i < 500; ++i)
            entries << fav(QStringLiteral("Page %1").arg(i), QStringLiteral("https://p%1.example/").arg(i));
        entries << fav("Page", "https://best.example/");
        const SearchIndex index(entries);
        const SearchIndex::Result result = index.find("page", Tree::Favorites, 20);
        QCOMPARE(result.found, 501);
        QCOMPARE(result.best.size(), 20);
        QCOMPARE(index.entry(result.best.first()).name, QStringLiteral("Page"));
        QVERIFY(index.memoryBytes() > 500 * 20);
    }
    void aQueryThatAddsLettersLooksOnlyAtWhatMatchedBefore()
    {
        QList<SearchIndex::Entry> entries;
        const QStringList words = {"alpha", "alphabet", "alpine", "beta", "alp", "Alphorn"};
        for (const QString& word : words)
            entries << fav(word, "https://" + word + ".example/");
        const SearchIndex index(entries);
        std::vector<int> matched;
        index.find("al", Tree::Favorites, 100, nullptr, &matched);
        QCOMPARE(matched.size(), size_t(5));
        for (const QString& query : {QStringLiteral("alp"), QStringLiteral("alph"), QStringLiteral("alpha b")}) {
            std::vector<int> narrowed;
            const SearchIndex::Result fromBefore = index.find(query, Tree::Favorites, 100, &matched, &narrowed);
            const SearchIndex::Result whole = index.find(query, Tree::Favorites, 100);
            QCOMPARE(fromBefore.best, whole.best);
            matched = narrowed;
        }
        QCOMPARE(names(index, index.find("alpha b", Tree::Favorites, 100, &matched)), QStringList{"alphabet"});
    }
};

QTEST_GUILESS_MAIN(TestSearchIndex)
#include "tst_searchindex.moc"
