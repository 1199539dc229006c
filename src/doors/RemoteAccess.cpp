#include "RemoteAccess.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <algorithm>

void RemoteAccess::setToken(const QByteArray& token)
{
    m_token = token;
    m_misses.clear();
}

bool RemoteAccess::sameBytes(const QByteArray& a, const QByteArray& b)
{
    // Both are hashed first, so that even their lengths are compared in the same time.
    const QByteArray x = QCryptographicHash::hash(a, QCryptographicHash::Sha256);
    const QByteArray y = QCryptographicHash::hash(b, QCryptographicHash::Sha256);
    unsigned char differ = 0;
    for (qsizetype i = 0; i < x.size(); ++i)
        differ |= static_cast<unsigned char>(x.at(i) ^ y.at(i));
    return differ == 0;
}

QByteArray RemoteAccess::newToken()
{
    QByteArray bytes(32, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

qint64 RemoteAccess::waitMs(const QString& client, qint64 nowMs) const
{
    const auto it = m_misses.constFind(client);
    return it == m_misses.cend() ? 0 : std::max<qint64>(0, it->until - nowMs);
}

RemoteAccess::Verdict RemoteAccess::check(const QString& client, const QByteArray& shown, qint64 nowMs)
{
    if (waitMs(client, nowMs) > 0)
        return Verdict::Waiting;
    if (!m_token.isEmpty() && sameBytes(shown, m_token)) {
        m_misses.remove(client);
        return Verdict::Allowed;
    }
    Misses& misses = m_misses[client];
    ++misses.count;
    const qint64 wait = std::min(kLongestWaitMs, kFirstWaitMs << std::min(misses.count - 1, 16));
    misses.until = nowMs + wait;
    return Verdict::WrongToken;
}
