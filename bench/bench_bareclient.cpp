// The floor of the command line's hand-over: a bare Qt program that connects a QLocalSocket to the
// running Vantrel's socket, writes the bytes it is given, and reads the answer to its end, as a
// second start of Vantrel does. Usage: bench_bareclient SOCKET BYTES-FILE
#include <QFile>
#include <QLocalSocket>

int main(int argc, char* argv[])
{
    if (argc != 3)
        return 2;
    QFile bytes(QString::fromLocal8Bit(argv[2]));
    if (!bytes.open(QIODevice::ReadOnly))
        return 2;
    QLocalSocket socket;
    socket.connectToServer(QString::fromLocal8Bit(argv[1]));
    if (!socket.waitForConnected(5000))
        return 4;
    socket.write(bytes.readAll());
    socket.waitForBytesWritten(5000);
    while (socket.state() == QLocalSocket::ConnectedState && socket.waitForReadyRead(5000))
        socket.readAll();
    return 0;
}
