#include "core/DoorMessage.h"

#include <QTest>

using namespace DoorMessage;

class TestDoorMessage : public QObject
{
    Q_OBJECT
private slots:
    void aRequestGoesThroughInPiecesAndComesOutTheSame()
    {
        const Request request{{QStringLiteral("--run"), QStringLiteral("Shop"), QStringLiteral("ünïcode ✓")},
                              QStringLiteral("/home/someone"),
                              QStringLiteral("token-1")};
        const QByteArray bytes = encode(request) + encode(Request{{QStringLiteral("--raise")}, {}, {}});
        QVERIFY(bytes.startsWith("VNTR\x01"));
        Reader reader;
        for (char byte : bytes.left(bytes.size() - 3)) // a byte at a time, as a slow socket gives
            reader.append(QByteArray(1, byte));
        const std::optional<QByteArray> first = reader.next();
        QVERIFY(first);
        QCOMPARE(requestFrom(*first), request);
        QVERIFY(!reader.next()); // the second is not whole yet
        QVERIFY(reader.pending() > 0);
        reader.append(bytes.right(3));
        const std::optional<QByteArray> second = reader.next();
        QVERIFY(second);
        QCOMPARE(requestFrom(*second)->arguments, QStringList{QStringLiteral("--raise")});
        QVERIFY(!reader.refused());
        QCOMPARE(reader.pending(), 0);
    }
    void aReplyGoesThroughTheSame()
    {
        const Reply reply{3, QStringLiteral("out"), QStringLiteral("There is no list \"X\"."), true};
        Reader reader;
        reader.append(encode(reply));
        QCOMPARE(replyFrom(*reader.next()), reply);
    }
    void strangersAreRefusedAtTheirFirstBytes()
    {
        Reader http;
        http.append("GET / HTTP/1.1\r\n");
        QVERIFY(!http.next());
        QVERIFY(http.refused());
        QCOMPARE(http.problem(), QStringLiteral("not a message of Vantrel"));
        Reader one;
        one.append("X");
        QVERIFY(!one.next());
        QVERIFY(one.refused());
        Reader nothing;
        QVERIFY(!nothing.next());
        QVERIFY(!nothing.refused());
        Reader half;
        half.append("VNT");
        QVERIFY(!half.next());
        QVERIFY(!half.refused()); // a message that has only begun
    }
    void anotherVersionOrAnOverlongFrameIsRefusedUnread()
    {
        Reader version;
        version.append(QByteArray("VNTR\x02", 5));
        QVERIFY(!version.next());
        QCOMPARE(version.problem(), QStringLiteral("a message of version 2, not 1"));
        Reader huge;
        huge.append(QByteArray("VNTR\x01\x7f\xff\xff\xff", 9));
        QVERIFY(!huge.next());
        QVERIFY(huge.refused());
        // Refused stays refused: what comes after is not read.
        huge.append(encode(Request{{QStringLiteral("--quit")}, {}, {}}));
        QVERIFY(!huge.next());
    }
    void payloadsThatAreNotRequestsAreRefusedWithAReason()
    {
        QString problem;
        QVERIFY(!requestFrom("not json", &problem));
        QCOMPARE(problem, QStringLiteral("not a JSON object"));
        QVERIFY(!requestFrom("[1,2]", &problem));
        QVERIFY(!requestFrom("{}", &problem));
        QCOMPARE(problem, QStringLiteral("no list of arguments"));
        QVERIFY(!requestFrom(R"({"args":["a",2]})", &problem));
        QCOMPARE(problem, QStringLiteral("an argument is not text"));
        QVERIFY(!requestFrom(R"({"args":[],"cwd":5})", &problem));
        QCOMPARE(problem, QStringLiteral("\"cwd\" is not text"));
        QByteArray many = R"({"args":[)";
        for (int i = 0; i <= kMostArguments; ++i)
            many += i ? R"(,"a")" : R"("a")";
        QVERIFY(!requestFrom(many + "]}", &problem));
        QVERIFY(requestFrom(R"({"args":[]})")); // the folder and token may be left out
        QVERIFY(!replyFrom(R"({"status":300})", &problem));
        QVERIFY(!replyFrom(R"({"status":1.5})", &problem));
        QVERIFY(!replyFrom(R"({"status":0,"more":"yes"})", &problem));
        QVERIFY(replyFrom(R"({"status":0})"));
    }
};

QTEST_GUILESS_MAIN(TestDoorMessage)
#include "tst_doormessage.moc"
