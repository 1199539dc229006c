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
    QStringList requests; // the paths asked for, in order

private:
    void answer(QTcpSocket* socket);
    struct Response
    {
        QByteArray body;
        QByteArray headers;
    };
    QHash<QString, Response> m_pages;
    QHash<QString, int> m_delays;
};
