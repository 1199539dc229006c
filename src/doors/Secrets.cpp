#include "Secrets.h"

#include "core/Globals.h"

#include <QEventLoop>
#include <QFile>
#include <QSaveFile>
#include <QTimer>

#include <qt6keychain/keychain.h>

namespace Secrets {

namespace {

constexpr char kService[] = "Vantrel";

bool& storeEnabled()
{
    static bool enabled = !qEnvironmentVariableIsSet("VANTREL_NO_SECRET_STORE");
    return enabled;
}

// Runs a keychain job to its end, or to the time-out; true when it ended without an error.
bool runJob(QKeychain::Job& job)
{
    if (!storeEnabled())
        return false;
    QEventLoop loop;
    bool finished = false;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, [&] {
        finished = true;
        loop.quit();
    });
    QTimer::singleShot(kStoreTimeoutMs, &loop, &QEventLoop::quit);
    job.setAutoDelete(false);
    job.start();
    if (!finished)
        loop.exec();
    return finished && job.error() == QKeychain::NoError;
}

bool writeFile(const QString& key, const QString& value)
{
    QSaveFile file(filePath(key));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // Only the user may read it, from its first byte on.
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(value.toUtf8());
    return file.commit();
}

} // namespace

QString filePath(const QString& key)
{
    return appFilePath(key + QStringLiteral(".secret"));
}

void setStoreEnabled(bool enabled)
{
    storeEnabled() = enabled;
}

Where store(const QString& key, const QString& value)
{
    if (value.isEmpty()) {
        QKeychain::DeletePasswordJob job(QString::fromLatin1(kService));
        job.setKey(key);
        runJob(job);
        QFile::remove(filePath(key));
        return Where::Nowhere;
    }
    QKeychain::WritePasswordJob job(QString::fromLatin1(kService));
    job.setKey(key);
    job.setTextData(value);
    if (runJob(job)) {
        QFile::remove(filePath(key)); // an older copy in the file goes
        return Where::SecretStore;
    }
    return writeFile(key, value) ? Where::File : Where::Nowhere;
}

QString read(const QString& key, Where* where)
{
    QKeychain::ReadPasswordJob job(QString::fromLatin1(kService));
    job.setKey(key);
    if (runJob(job)) {
        if (where)
            *where = Where::SecretStore;
        return job.textData();
    }
    QFile file(filePath(key));
    if (file.open(QIODevice::ReadOnly)) {
        if (where)
            *where = Where::File;
        return QString::fromUtf8(file.readAll());
    }
    if (where)
        *where = Where::Nowhere;
    return QString();
}

} // namespace Secrets
