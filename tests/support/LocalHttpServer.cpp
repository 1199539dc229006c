#include "LocalHttpServer.h"

#include <QTimer>

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
    requests.append(path);
    const QString page = path.section(u'?', 0, 0);
    Response response{"<html><head><title>Not found</title></head><body>Not found</body></html>",
                      "Content-Type: text/html; charset=utf-8\r\n"};
    QByteArray status = "404 Not Found";
    if (m_pages.contains(path) || m_pages.contains(page)) {
        response = m_pages.contains(path) ? m_pages.value(path) : m_pages.value(page);
        status = "200 OK";
    }
    const QByteArray bytes = "HTTP/1.1 " + status + "\r\n" + response.headers + "Content-Length: " +
                             QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n\r\n" +
                             response.body;
    auto send = [socket, bytes] {
        socket->write(bytes);
        socket->disconnectFromHost();
    };
    if (m_delays.contains(page))
        QTimer::singleShot(m_delays.value(page), socket, send); // a page that is slow on purpose
    else
        send();
}

void LocalHttpServer::setDelay(const QString& path, int milliseconds)
{
    m_delays.insert(path, milliseconds);
}
