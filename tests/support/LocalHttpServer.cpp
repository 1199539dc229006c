#include "LocalHttpServer.h"

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

bool LocalHttpServer::start()
{
    return listen(QHostAddress::LocalHost, 0);
}

void LocalHttpServer::setPage(const QString& path, const QByteArray& html)
{
    m_pages.insert(path, html);
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
    QByteArray body;
    QByteArray status = "200 OK";
    if (m_pages.contains(path))
        body = m_pages.value(path);
    else {
        status = "404 Not Found";
        body = "<html><head><title>Not found</title></head><body>Not found</body></html>";
    }
    socket->write("HTTP/1.1 " + status + "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " +
                  QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
    socket->disconnectFromHost();
}
