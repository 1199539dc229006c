#pragma once

#include <QHash>
#include <QTcpServer>

// A small HTTP server on 127.0.0.1 for the browser tests: it answers GET requests for the pages
// it was given, 404 otherwise, and closes each connection after its answer.
class LocalHttpServer : public QTcpServer
{
    Q_OBJECT

public:
    explicit LocalHttpServer(QObject* parent = nullptr);
    // Listens on `port` of 127.0.0.1, or on any free one.
    bool start(quint16 port = 0);
    void setPage(const QString& path, const QByteArray& html);
    // Any answer: its body and the header lines that go with it ("Content-Type: ...").
    void setResponse(const QString& path, const QByteArray& body, const QByteArray& headers);
    QString url(const QString& path) const;
    // Answers `path` (whatever its query) only after `milliseconds`.
    void setDelay(const QString& path, int milliseconds);
    // Answers `path` with another status ("301 Moved Permanently") and header lines, the first
    // `times` times it is asked for (-1: always).
    void setStatus(const QString& path, const QByteArray& status, const QByteArray& headers = QByteArray(),
                   int times = -1);
    // Answers HEAD on `path` with 405, as some sites do.
    void refuseHead(const QString& path) { m_noHead.insert(path, true); }
    // Every answer waits this long (a slow site); 0: none.
    void setDelayForAll(int milliseconds) { m_delayAll = milliseconds; }
    QStringList requests; // the paths asked for, in order
    QStringList methods;  // their methods
    int inFlight = 0;     // requests read and not yet answered
    int mostInFlight = 0;

private:
    void answer(QTcpSocket* socket);
    struct Response
    {
        QByteArray body;
        QByteArray headers;
    };
    QHash<QString, Response> m_pages;
    QHash<QString, int> m_delays;
    struct Status
    {
        QByteArray line;
        QByteArray headers;
        int times = -1;
    };
    QHash<QString, Status> m_statuses;
    QHash<QString, bool> m_noHead;
    int m_delayAll = 0;
};
