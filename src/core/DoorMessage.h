#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

// What a second start of Vantrel and the running program say to each other over the user's local
// socket. Each message is a frame: "VNTR", a version byte, the length of what follows (four bytes,
// most significant first) and that many bytes of UTF-8 JSON. The reader takes bytes as they come
// and refuses, with a reason, anything that is not such a frame: the other end is another process,
// and a process can be anything.
namespace DoorMessage {

inline constexpr char kMagic[] = "VNTR";
inline constexpr quint8 kVersion = 1;
inline constexpr qsizetype kHeaderSize = 9;
// Far above any command line a person or script gives; a frame beyond it is refused unread.
inline constexpr qsizetype kLongestPayload = 1 << 20;
inline constexpr qsizetype kMostArguments = 4096;

// A second start: its arguments (without the program's name), the folder it was started in (for
// files named relative to it) and the token the desktop gave it to raise a window with.
struct Request
{
    QStringList arguments;
    QString folder;
    QString activationToken;

    bool operator==(const Request&) const = default;
};

// The running program's answer: what the second start prints on its standard output and error,
// and the status it ends with. `more`: further replies follow (a watch of the state).
struct Reply
{
    int status = 0;
    QString out;
    QString err;
    bool more = false;

    bool operator==(const Reply&) const = default;
};

QByteArray frame(const QByteArray& payload);
QByteArray encode(const Request& request);
QByteArray encode(const Reply& reply);
// The payload of a frame read back; none, with `problem` set, when it is not a request or reply.
std::optional<Request> requestFrom(const QByteArray& payload, QString* problem = nullptr);
std::optional<Reply> replyFrom(const QByteArray& payload, QString* problem = nullptr);

// Frames out of a stream of bytes that come in pieces. After a refusal it stays refused: the
// connection is to be dropped.
class Reader
{
public:
    void append(const QByteArray& bytes);
    // The payload of the next whole frame, if one has come.
    std::optional<QByteArray> next();
    bool refused() const { return !m_problem.isEmpty(); }
    QString problem() const { return m_problem; }
    // Bytes of a frame begun and not yet whole.
    qsizetype pending() const { return m_buffer.size(); }

private:
    QByteArray m_buffer;
    QString m_problem;
};

} // namespace DoorMessage
