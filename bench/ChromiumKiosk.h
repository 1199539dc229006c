#pragma once

// Debian's Chromium in kiosk mode, driven over its DevTools pipe as kiosk set-ups drive it: a
// private profile in a scratch folder, the protocol's messages (JSON, each ended by a NUL byte)
// written to its file descriptor 3 and read from its 4. For benchmarks that set Vantrel beside
// Chromium on the same pages and screen.
#include <QElapsedTimer>
#include <QEventLoop>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <unistd.h>

#include <memory>

class ChromiumKiosk
{
public:
    static QString program() { return QStringLiteral("/usr/bin/chromium"); }

    ~ChromiumKiosk()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(5000))
                m_process.kill();
            m_process.waitForFinished(5000);
        }
        for (int fd : {m_toChromium, m_fromChromium})
            if (fd >= 0)
                ::close(fd);
    }

    // Starts Chromium full screen on `firstUrl`; false when it is not installed or does not answer.
    bool start(const QString& firstUrl)
    {
        int in[2], out[2];
        if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0)
            return false;
        m_toChromium = in[1];
        m_fromChromium = out[0];
        const int childIn = in[0], childOut = out[1];
        ::fcntl(m_fromChromium, F_SETFL, ::fcntl(m_fromChromium, F_GETFL) | O_NONBLOCK);
        m_process.setChildProcessModifier([childIn, childOut] {
            ::dup2(childIn, 3); // dup2 leaves the copies open across exec
            ::dup2(childOut, 4);
        });
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.setStandardOutputFile(QProcess::nullDevice());
        QStringList arguments{"--kiosk", "--remote-debugging-pipe", "--user-data-dir=" + m_profile.path(),
                              "--no-first-run", "--no-default-browser-check", "--disable-background-networking",
                              "--disable-component-update", "--disable-sync", "--disable-quic", "--noerrdialogs",
                              "--disable-translate", "--password-store=basic", "--disable-gpu"};
        if (::geteuid() == 0)
            arguments << "--no-sandbox"; // Chromium refuses to start as root otherwise
        m_process.start(program(), arguments << firstUrl);
        const bool started = m_process.waitForStarted(10000);
        ::close(childIn);
        ::close(childOut);
        if (!started)
            return false;
        m_notifier = std::make_unique<QSocketNotifier>(m_fromChromium, QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { readAvailable(); });
        return !call("Browser.getVersion").isEmpty();
    }

    // Sends a command and waits for its answer's result (empty on an error or after `timeoutMs`).
    QJsonObject call(const QString& method, const QJsonObject& params = {}, const QString& session = {},
                     int timeoutMs = 15000)
    {
        const int id = send(method, params, session);
        QElapsedTimer timer;
        timer.start();
        while (!m_answers.contains(id) && timer.elapsed() < timeoutMs && m_process.state() == QProcess::Running) {
            QEventLoop loop;
            QTimer::singleShot(2, &loop, &QEventLoop::quit);
            loop.exec();
        }
        return m_answers.take(id).value(QStringLiteral("result")).toObject();
    }

    // Sends a command without waiting; its answer is kept aside.
    int send(const QString& method, const QJsonObject& params = {}, const QString& session = {})
    {
        QJsonObject message{{"id", ++m_lastId}, {"method", method}, {"params", params}};
        if (!session.isEmpty())
            message.insert(QStringLiteral("sessionId"), session);
        const QByteArray bytes = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\0';
        qsizetype written = 0;
        while (written < bytes.size()) {
            const ssize_t n = ::write(m_toChromium, bytes.constData() + written, size_t(bytes.size() - written));
            if (n <= 0)
                break;
            written += n;
        }
        return m_lastId;
    }

    // The page targets (tabs) Chromium has now, their ids.
    QStringList pageTargets()
    {
        QStringList ids;
        const QJsonArray infos = call("Target.getTargets").value("targetInfos").toArray();
        for (const QJsonValue& info : infos)
            if (info.toObject().value("type").toString() == u"page")
                ids << info.toObject().value("targetId").toString();
        return ids;
    }
    // A session on a tab, for commands to its page.
    QString attach(const QString& target)
    {
        return call("Target.attachToTarget", {{"targetId", target}, {"flatten", true}}).value("sessionId").toString();
    }
    // The answer to a command sent with send(), once it came (empty until then).
    QJsonObject answer(int id) const { return m_answers.value(id).value(QStringLiteral("result")).toObject(); }
    qint64 pid() const { return m_process.processId(); }

private:
    void readAvailable()
    {
        char chunk[65536];
        for (;;) {
            const ssize_t n = ::read(m_fromChromium, chunk, sizeof chunk);
            if (n <= 0)
                break;
            m_buffer.append(chunk, qsizetype(n));
        }
        for (qsizetype end = m_buffer.indexOf('\0'); end >= 0; end = m_buffer.indexOf('\0')) {
            const QJsonObject message = QJsonDocument::fromJson(m_buffer.left(end)).object();
            m_buffer.remove(0, end + 1);
            if (message.contains(QStringLiteral("id")))
                m_answers.insert(message.value(QStringLiteral("id")).toInt(), message);
            // Events are not asked for and are let go.
        }
    }

    QTemporaryDir m_profile;
    QProcess m_process;
    int m_toChromium = -1;
    int m_fromChromium = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_buffer;
    QHash<int, QJsonObject> m_answers;
    int m_lastId = 0;
};
