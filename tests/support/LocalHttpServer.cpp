#include "LocalHttpServer.h"

#include <QTimer>

#include <algorithm>

#include <QTcpSocket>

LocalHttpServer::LocalHttpServer(QObject* parent) : QTcpServer(parent)
{
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

bool LocalHttpServer::start(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

void LocalHttpServer::setPage(const QString& path, const QByteArray& html)
{
    setResponse(path, html, "Content-Type: text/html; charset=utf-8\r\n");
}

void LocalHttpServer::setResponse(const QString& path, const QByteArray& body, const QByteArray& headers)
{
    m_pages.insert(path, {body, headers});
}

QString LocalHttpServer::url(const QString& path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path);
}

void LocalHttpServer::answer(QTcpSocket* socket)
{
    const QByteArray request = socket->readAll();
    const QList<QByteArray> first = request.left(request.indexOf("\r\n")).split(' ');
    if (first.size() < 2)
        return;
    const QString path = QString::fromLatin1(first[1]);
    const bool head = first[0] == "HEAD";
    requests.append(path);
    methods.append(QString::fromLatin1(first[0]));
    const QString page = path.section(u'?', 0, 0);
    Response response{"<html><head><title>Not found</title></head><body>Not found</body></html>",
                      "Content-Type: text/html; charset=utf-8\r\n"};
    QByteArray status = "404 Not Found";
    if (m_pages.contains(path) || m_pages.contains(page)) {
        response = m_pages.contains(path) ? m_pages.value(path) : m_pages.value(page);
        status = "200 OK";
    }
    if (m_statuses.contains(page) && m_statuses.value(page).times != 0) {
        Status& answer = m_statuses[page];
        status = answer.line;
        response.headers += answer.headers;
        if (answer.times > 0)
            --answer.times;
    }
    if (head && m_noHead.contains(page)) {
        status = "405 Method Not Allowed";
        response.headers = "Allow: GET\r\n";
    }
    const QByteArray bytes = "HTTP/1.1 " + status + "\r\n" + response.headers + "Content-Length: " +
                             QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n\r\n" +
                             (head ? QByteArray() : response.body);
    mostInFlight = std::max(mostInFlight, ++inFlight);
    auto send = [this, socket, bytes] {
        --inFlight;
        socket->write(bytes);
        socket->disconnectFromHost();
    };
    const int delay = m_delays.contains(page) ? m_delays.value(page) : m_delayAll;
    if (delay > 0)
        QTimer::singleShot(delay, socket, send); // a page that is slow on purpose
    else
        send();
}

void LocalHttpServer::setDelay(const QString& path, int milliseconds)
{
    m_delays.insert(path, milliseconds);
}

void LocalHttpServer::setStatus(const QString& path, const QByteArray& status, const QByteArray& headers, int times)
{
    m_statuses.insert(path, {status, headers, times});
}
