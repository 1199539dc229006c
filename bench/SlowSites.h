#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <memory>
#include <vector>

// Web sites on the loopback addresses 127.0.0.1, 127.0.0.2, ... (one port each, chosen free),
// each answering any request with 200 after a set time, the body left out for HEAD: the far
// end of a link check, slow as real sites are.
class SlowSites
{
public:
    SlowSites(int sites, int delayMs) : m_delayMs(delayMs)
    {
        for (int i = 1; i <= sites; ++i) {
            auto server = std::make_unique<QTcpServer>();
            if (!server->listen(QHostAddress(QStringLiteral("127.0.0.%1").arg(i)), 0))
                continue;
            QTcpServer* s = server.get();
            QObject::connect(s, &QTcpServer::newConnection, s, [this, s] {
                while (QTcpSocket* socket = s->nextPendingConnection()) {
                    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(socket); });
                }
            });
            m_servers.push_back(std::move(server));
        }
    }
    int count() const { return int(m_servers.size()); }
    QString url(int site, int page) const
    {
        const QTcpServer& s = *m_servers.at(size_t(site));
        return QStringLiteral("http://%1:%2/page/%3").arg(s.serverAddress().toString()).arg(s.serverPort()).arg(page);
    }
    int answered = 0;

private:
    void answer(QTcpSocket* socket)
    {
        const QByteArray request = socket->readAll();
        if (!request.contains("\r\n\r\n"))
            return;
        const bool head = request.startsWith("HEAD ");
        const QByteArray body = "<html><body>page</body></html>";
        const QByteArray bytes = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                                 QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" +
                                 (head ? QByteArray() : body);
        QTimer::singleShot(m_delayMs, socket, [this, socket, bytes] {
            ++answered;
            socket->write(bytes);
            socket->disconnectFromHost();
        });
    }

    int m_delayMs;
    std::vector<std::unique_ptr<QTcpServer>> m_servers;
};
