#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// Who may use the remote page: whoever shows the token, compared in constant time. A client
// (told by its address) that shows a wrong one waits before it may try again, 1 s after the first
// miss, doubling to a minute, whatever it shows meanwhile; so a token of 256 random bits cannot be
// guessed by trying. The token itself never goes into a log.
class RemoteAccess
{
public:
    enum class Verdict { Allowed, WrongToken, Waiting };

    static constexpr qint64 kFirstWaitMs = 1000;
    static constexpr qint64 kLongestWaitMs = 60 * 1000;

    void setToken(const QByteArray& token);
    bool hasToken() const { return !m_token.isEmpty(); }

    Verdict check(const QString& client, const QByteArray& shown, qint64 nowMs);
    // How long `client` must still wait, at `nowMs`.
    qint64 waitMs(const QString& client, qint64 nowMs) const;

    // A new token: 32 random bytes from the system's source, as URL-safe Base64 (43 characters).
    static QByteArray newToken();
    // Whether two byte strings are equal, in a time that does not depend on where they differ.
    static bool sameBytes(const QByteArray& a, const QByteArray& b);

private:
    struct Misses
    {
        int count = 0;
        qint64 until = 0;
    };
    QByteArray m_token;
    QHash<QString, Misses> m_misses;
};
