#include "InstanceClient.h"

#include "InstancePlace.h"

#include <QFile>
#include <QLocalSocket>

#include <sys/stat.h>
#include <unistd.h>

namespace InstanceClient {

namespace {

// How long the running program may take to answer a request (a status watch: to its next line).
constexpr int kAnswerMs = 30000;
constexpr int kConnectMs = 2000;

void print(FILE* stream, const QString& text)
{
    if (text.isEmpty())
        return;
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

std::optional<int> handOver(const QString& folder, const DoorMessage::Request& request, FILE* out, FILE* err)
{
    if (folder.isEmpty())
        return std::nullopt;
    const QString path = InstancePlace::socketFile(folder);
    struct stat info{};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISSOCK(info.st_mode) ||
        info.st_uid != ::getuid())
        return std::nullopt; // none there, or not the user's own: never spoken to
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(kConnectMs))
        return std::nullopt; // a socket left behind by a program that is gone
    socket.write(DoorMessage::encode(request));
    if (!socket.waitForBytesWritten(kConnectMs))
        return std::nullopt;
    DoorMessage::Reader reader;
    bool answered = false;
    for (;;) {
        while (const std::optional<QByteArray> payload = reader.next()) {
            QString problem;
            const std::optional<DoorMessage::Reply> reply = DoorMessage::replyFrom(*payload, &problem);
            if (!reply) {
                print(err, QStringLiteral("vantrel: the running Vantrel answered something unreadable: %1\n").arg(problem));
                return 1;
            }
            answered = true;
            print(out, reply->out);
            print(err, reply->err);
            if (!reply->more)
                return reply->status;
        }
        if (reader.refused()) {
            print(err, QStringLiteral("vantrel: the running Vantrel answered something unreadable: %1\n").arg(reader.problem()));
            return 1;
        }
        if (socket.state() != QLocalSocket::ConnectedState && socket.bytesAvailable() == 0)
            break;
        if (!socket.waitForReadyRead(kAnswerMs) && socket.bytesAvailable() == 0) {
            if (socket.state() == QLocalSocket::ConnectedState && !answered) {
                print(err, QStringLiteral("vantrel: the running Vantrel did not answer.\n"));
                return 1;
            }
            if (socket.state() == QLocalSocket::ConnectedState)
                continue; // a watch: the state has not changed
            break;
        }
        reader.append(socket.readAll());
    }
    if (answered)
        return 0; // a watch whose program ended
    print(err, QStringLiteral("vantrel: the running Vantrel closed without an answer.\n"));
    return 1;
}

} // namespace InstanceClient
