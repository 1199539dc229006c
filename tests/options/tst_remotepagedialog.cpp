// The Remote Page dialog of More Options: off until ticked; switched on, the page is served and its
// address with the token shows as text and as a QR code; a new token locks the old one out.
#include "RecordingDoorHost.h"
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "doors/RemotePage.h"
#include "doors/Secrets.h"
#include "mainwindow/Vantrel1.h"
#include "options/MoreOptions.h"
#include "options/OptionsPanel.h"
#include "options/RemotePageDialog.h"
#include "settings/RemoteSettings.h"
#include "verbs/WebForm1.h"
#include "widgets/QrCode.h"

#include <QCheckBox>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTcpServer>
#include <QTest>

#include <memory>

class TestRemotePageDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    std::unique_ptr<RemotePage> m_page;
    QList<ScriptedBrowserWindow*> m_created;
    RecordingDoorHost m_host;

    RemotePageDialog* open()
    {
        m_main->optionsPanel()->MoreOptionsBtn_Click();
        QTest::mouseClick(m_main->optionsPanel()->moreOptions()->findChild<QPushButton*>("RemotePageBtn"), Qt::LeftButton);
        return m_main->remotePageDialog();
    }
    template <typename T> static T* control(QWidget* dialog, const char* name)
    {
        T* found = dialog->findChild<T*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }
    static int freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        return probe.serverPort();
    }
    int stateStatus(const QByteArray& token)
    {
        QNetworkAccessManager net;
        QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:%1/api/state").arg(m_page->port())));
        request.setRawHeader("X-Vantrel-Token", token);
        QNetworkReply* reply = net.get(request);
        QSignalSpy finished(reply, &QNetworkReply::finished);
        finished.wait(5000);
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        delete reply;
        return status;
    }

private slots:
    void init()
    {
        Secrets::setStoreEnabled(false);
        m_app = std::make_unique<TempAppFolder>();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_page = std::make_unique<RemotePage>(m_main->verbs(), &m_host);
        m_main->setRemotePage(m_page.get());
        m_main->show();
    }
    void cleanup()
    {
        m_main.reset();
        m_page.reset();
        m_app.reset();
    }

    void offUntilTickedThenServedWithItsAddressAndCode()
    {
        RemotePageDialog* dialog = open();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Remote Page"));
        QVERIFY(!control<QCheckBox>(dialog, "RemoteEnabledChk")->isChecked());
        QVERIFY(!control<QCheckBox>(dialog, "RemoteLanChk")->isChecked());
        QCOMPARE(control<QLabel>(dialog, "RemoteAddress")->text(), QStringLiteral("Not served now"));
        QVERIFY(!m_page->isServing());

        const int port = freePort();
        control<QCheckBox>(dialog, "RemoteEnabledChk")->setChecked(true);
        control<QSpinBox>(dialog, "RemotePortSpin")->setValue(port);
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        QVERIFY(m_page->isServing());
        QCOMPARE(m_page->port(), port);
        QVERIFY(RemoteSettings::read().enabled);
        QVERIFY(!readAll(m_app->file("Vantrel.conf")).contains("token"));

        dialog = open();
        const QString address = control<QLabel>(dialog, "RemoteAddress")->text();
        QVERIFY2(address.startsWith(QStringLiteral("http://127.0.0.1:%1/#token=").arg(port)), qPrintable(address));
        const QByteArray token = address.section(u'=', 1).toLatin1();
        QCOMPARE(token.size(), 43);
        QCOMPARE(Secrets::read("remote-token"), QString::fromLatin1(token));
        const QPixmap code = control<QLabel>(dialog, "RemoteQr")->pixmap();
        QVERIFY(!code.isNull());
        QCOMPARE(code.width(), code.height());
        QCOMPARE(code.toImage(), QrCode::image(address, 4));
        QCOMPARE(stateStatus(token), 200);

        // A new token: the old address opens nothing any more.
        QTest::mouseClick(control<QPushButton>(dialog, "RemoteRenewBtn"), Qt::LeftButton);
        const QString renewed = control<QLabel>(dialog, "RemoteAddress")->text();
        QVERIFY(renewed != address);
        QCOMPARE(stateStatus(token), 401);
        QTest::qWait(1100);
        QCOMPARE(stateStatus(renewed.section(u'=', 1).toLatin1()), 200);

        // Switched off: not served.
        control<QCheckBox>(dialog, "RemoteEnabledChk")->setChecked(false);
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QVERIFY(!m_page->isServing());
    }

    void aQrCodeHasItsQuietZoneAndFinderPatterns()
    {
        const QString text = QStringLiteral("http://192.168.1.20:8765/#token=") + QString(43, u'x');
        const int modules = QrCode::modules(text);
        QVERIFY(modules >= 21 && (modules - 17) % 4 == 0); // a QR version's size
        const QImage image = QrCode::image(text, 3);
        QCOMPARE(image.width(), (modules + 8) * 3);
        QCOMPARE(image.pixelColor(1, 1), QColor(Qt::white));                        // quiet zone
        QCOMPARE(image.pixelColor(4 * 3 + 1, 4 * 3 + 1), QColor(Qt::black));         // finder's corner
        QCOMPARE(image.pixelColor((4 + 1) * 3 + 1, (4 + 1) * 3 + 1), QColor(Qt::white)); // its white ring
        QCOMPARE(image.pixelColor((4 + 3) * 3 + 1, (4 + 3) * 3 + 1), QColor(Qt::black)); // its centre
        QVERIFY(QrCode::image(QString(8000, u'x')).isNull()); // too much for any QR code
    }
};

QTEST_MAIN(TestRemotePageDialog)
#include "tst_remotepagedialog.moc"
