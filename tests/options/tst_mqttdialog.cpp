// The MQTT dialog of More Options: off until ticked, the broker and its port, TLS files that must
// be readable, the password kept out of Vantrel.conf (in a file only the user can read when no
// secret store answers), how the connection stands, and the door following at once on a real
// broker.
#include "MosquittoBroker.h"
#include "RecordingDoorHost.h"
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "doors/MqttDoor.h"
#include "doors/Secrets.h"
#include "mainwindow/Vantrel1.h"
#include "options/MoreOptions.h"
#include "options/MqttDialog.h"
#include "options/OptionsPanel.h"
#include "settings/VantrelConf.h"
#include "verbs/WebForm1.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <memory>

class TestMqttDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    std::unique_ptr<MqttDoor> m_door;
    QList<ScriptedBrowserWindow*> m_created;
    RecordingDoorHost m_host;

    MqttDialog* open()
    {
        m_main->optionsPanel()->MoreOptionsBtn_Click();
        QTest::mouseClick(m_main->optionsPanel()->moreOptions()->findChild<QPushButton*>("MqttBtn"), Qt::LeftButton);
        MqttDialog* dialog = m_main->mqttDialog();
        return dialog && dialog->isVisible() ? dialog : nullptr;
    }
    template <typename T> T* control(MqttDialog* dialog, const char* name)
    {
        T* found = dialog->findChild<T*>(QLatin1String(name));
        if (!found)
            qFatal("no control %s", name);
        return found;
    }

private slots:
    void init()
    {
        Secrets::setStoreEnabled(false); // no desktop here: the file stands in for the secret store
        m_app = std::make_unique<TempAppFolder>();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_door = std::make_unique<MqttDoor>(m_main->verbs(), &m_host);
        m_main->setMqttDoor(m_door.get());
        m_main->show();
    }
    void cleanup()
    {
        m_main.reset();
        m_door.reset();
        m_app.reset();
    }

    void itIsOffUntilTickedAndTellsWhatIsMissing()
    {
        MqttDialog* dialog = open();
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("MQTT"));
        QVERIFY(!control<QCheckBox>(dialog, "MqttEnabledChk")->isChecked());
        QCOMPARE(control<QLineEdit>(dialog, "MqttHostEdit")->text(), QStringLiteral("127.0.0.1"));
        QCOMPARE(control<QSpinBox>(dialog, "MqttPortSpin")->value(), 1883);
        QVERIFY(control<QCheckBox>(dialog, "MqttHomeAssistantChk")->isChecked());
        QVERIFY(!control<QLineEdit>(dialog, "MqttCaFileEdit")->isEnabledTo(dialog)); // TLS is off
        QCOMPARE(control<QLabel>(dialog, "MqttStatus")->text(), QStringLiteral("Off"));
        QCOMPARE(control<QLineEdit>(dialog, "MqttBaseTopicEdit")->placeholderText(), "vantrel/" + MqttSettings().nodeName());
        control<QLineEdit>(dialog, "MqttNodeEdit")->setText("lobby");
        QCOMPARE(control<QLineEdit>(dialog, "MqttBaseTopicEdit")->placeholderText(), QStringLiteral("vantrel/lobby"));

        control<QCheckBox>(dialog, "MqttEnabledChk")->setChecked(true);
        control<QLineEdit>(dialog, "MqttHostEdit")->clear();
        DialogService::clearShown();
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Name the MQTT broker to connect to."});
        QVERIFY(dialog->isVisible());
        QVERIFY(!MqttSettings::read().enabled);

        control<QLineEdit>(dialog, "MqttHostEdit")->setText("broker.lan");
        control<QCheckBox>(dialog, "MqttTlsChk")->setChecked(true);
        QVERIFY(control<QLineEdit>(dialog, "MqttCaFileEdit")->isEnabledTo(dialog));
        control<QLineEdit>(dialog, "MqttCaFileEdit")->setText(m_app->path() + "/no-such-ca.pem");
        DialogService::clearShown();
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"The file " + m_app->path() + "/no-such-ca.pem cannot be read."});
        QVERIFY(dialog->isVisible());
    }

    void thePasswordIsKeptOutOfTheSettings()
    {
        MqttDialog* dialog = open();
        QVERIFY(dialog);
        control<QCheckBox>(dialog, "MqttEnabledChk")->setChecked(true);
        control<QLineEdit>(dialog, "MqttHostEdit")->setText("127.0.0.1");
        control<QSpinBox>(dialog, "MqttPortSpin")->setValue(1);  // nobody there: it keeps trying
        control<QLineEdit>(dialog, "MqttUserEdit")->setText("wall");
        QTest::keyClicks(control<QLineEdit>(dialog, "MqttPasswordEdit"), "s3cret-Pa55");
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        const MqttSettings stored = MqttSettings::read();
        QVERIFY(stored.enabled);
        QCOMPARE(stored.user, QStringLiteral("wall"));
        QCOMPARE(stored.port, 1);
        QVERIFY(!readAll(VantrelConf::path()).contains("s3cret"));
        const QFileInfo secret(Secrets::filePath(MqttDoor::kPasswordKey));
        QVERIFY(secret.exists());
        QCOMPARE(secret.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther | QFileDevice::WriteGroup
                                         | QFileDevice::WriteOther), QFileDevice::Permissions());
        Secrets::Where where = Secrets::Where::Nowhere;
        QCOMPARE(Secrets::read(MqttDoor::kPasswordKey, &where), QStringLiteral("s3cret-Pa55"));
        QVERIFY(where == Secrets::Where::File);
        // Nobody at port 1: the dialog says why, once it has tried.
        dialog = open();
        QVERIFY(control<QLineEdit>(dialog, "MqttPasswordEdit")->text().isEmpty());
        QCOMPARE(control<QLineEdit>(dialog, "MqttPasswordEdit")->placeholderText(), QStringLiteral("(kept; type to change)"));
        QVERIFY(QTest::qWaitFor([&] { return control<QLabel>(dialog, "MqttStatus")->text().startsWith("Not connected: cannot reach 127.0.0.1:1 (Connection refused)"); }, 5000));
        // OK without touching the password keeps it.
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QCOMPARE(Secrets::read(MqttDoor::kPasswordKey), QStringLiteral("s3cret-Pa55"));
    }

    void theDoorFollowsAtOnce()
    {
        QTemporaryDir folder;
        MosquittoBroker broker(folder.path());
        QVERIFY(broker.start());
        MqttDialog* dialog = open();
        control<QCheckBox>(dialog, "MqttEnabledChk")->setChecked(true);
        control<QSpinBox>(dialog, "MqttPortSpin")->setValue(broker.port());
        control<QLineEdit>(dialog, "MqttNodeEdit")->setText("lobby");
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&] { return m_door->isConnected(); }, 5000));
        QCOMPARE(m_door->base(), QStringLiteral("vantrel/lobby"));
        dialog = open();
        QVERIFY(QTest::qWaitFor([&] {
            return control<QLabel>(dialog, "MqttStatus")->text()
                   == QStringLiteral("Connected to 127.0.0.1:%1, topics under vantrel/lobby").arg(broker.port());
        }, 3000));
        control<QCheckBox>(dialog, "MqttEnabledChk")->setChecked(false);
        QTest::mouseClick(control<QPushButton>(dialog, "OKBtn"), Qt::LeftButton);
        QVERIFY(!m_door->isConnected());
    }
};

QTEST_MAIN(TestMqttDialog)
#include "tst_mqttdialog.moc"
