#include "MqttDialog.h"

#include "core/DialogService.h"
#include "doors/MqttDoor.h"
#include "doors/Secrets.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

MqttDialog::MqttDialog(QWidget* owner, MqttDoor* door) : QWidget(owner, Qt::Dialog), m_door(door)
{
    setObjectName(QStringLiteral("MqttDialog"));
    setWindowTitle(tr("MQTT"));
    auto* form = new QFormLayout;
    m_enabled = new QCheckBox(tr("Connect to an MQTT broker"), this);
    m_enabled->setObjectName(QStringLiteral("MqttEnabledChk"));
    m_enabled->setToolTip(tr("Vantrel takes commands and tells its state on the broker; off, no connection is made"));
    form->addRow(m_enabled);
    m_host = new QLineEdit(this);
    m_host->setObjectName(QStringLiteral("MqttHostEdit"));
    form->addRow(tr("Broker:"), m_host);
    m_port = new QSpinBox(this);
    m_port->setObjectName(QStringLiteral("MqttPortSpin"));
    m_port->setRange(1, 65535);
    form->addRow(tr("Port:"), m_port);
    m_tls = new QCheckBox(tr("Use TLS"), this);
    m_tls->setObjectName(QStringLiteral("MqttTlsChk"));
    form->addRow(m_tls);
    m_caFile = fileRow(QStringLiteral("MqttCaFile"), tr("Certificate authority:"), form);
    m_certFile = fileRow(QStringLiteral("MqttCertFile"), tr("Client certificate:"), form);
    m_keyFile = fileRow(QStringLiteral("MqttKeyFile"), tr("Client key:"), form);
    m_user = new QLineEdit(this);
    m_user->setObjectName(QStringLiteral("MqttUserEdit"));
    form->addRow(tr("User name:"), m_user);
    m_password = new QLineEdit(this);
    m_password->setObjectName(QStringLiteral("MqttPasswordEdit"));
    m_password->setEchoMode(QLineEdit::Password);
    connect(m_password, &QLineEdit::textEdited, this, [this] { m_passwordEdited = true; });
    form->addRow(tr("Password:"), m_password);
    m_node = new QLineEdit(this);
    m_node->setObjectName(QStringLiteral("MqttNodeEdit"));
    form->addRow(tr("Node name:"), m_node);
    m_base = new QLineEdit(this);
    m_base->setObjectName(QStringLiteral("MqttBaseTopicEdit"));
    form->addRow(tr("Base topic:"), m_base);
    connect(m_node, &QLineEdit::textChanged, this, [this] {
        MqttSettings shown;
        shown.node = m_node->text();
        m_base->setPlaceholderText(shown.base());
    });
    m_homeAssistant = new QCheckBox(tr("Let Home Assistant find Vantrel (MQTT discovery)"), this);
    m_homeAssistant->setObjectName(QStringLiteral("MqttHomeAssistantChk"));
    form->addRow(m_homeAssistant);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("MqttStatus"));
    m_status->setWordWrap(true);
    form->addRow(tr("Now:"), m_status);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    connect(buttons, &QDialogButtonBox::accepted, this, &MqttDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    // How the connection stands follows while the dialog is open.
    auto* status = new QTimer(this);
    connect(status, &QTimer::timeout, this, &MqttDialog::showStatus);
    status->start(1000);
    showSettings();
}

QLineEdit* MqttDialog::fileRow(const QString& name, const QString& label, QFormLayout* form)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name + QStringLiteral("Edit"));
    auto* choose = new QPushButton(tr("Choose..."), this);
    choose->setObjectName(name + QStringLiteral("Btn"));
    connect(choose, &QPushButton::clicked, this, [this, edit, label] {
        const QString start = edit->text().isEmpty() ? QDir::homePath() : edit->text();
        if (const auto chosen = DialogService::openFile(label.chopped(1), start,
                                                        {tr("Certificates and keys (*.pem *.crt *.key)"), tr("All files (*)")}))
            edit->setText(chosen->path);
    });
    auto* row = new QWidget(this);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(edit, 1);
    line->addWidget(choose);
    form->addRow(label, row);
    // The row follows TLS as a whole.
    connect(m_tls, &QCheckBox::toggled, row, &QWidget::setEnabled);
    return edit;
}

void MqttDialog::showSettings()
{
    const MqttSettings s = MqttSettings::read();
    m_enabled->setChecked(s.enabled);
    m_host->setText(s.host);
    m_port->setValue(s.port);
    m_tls->setChecked(s.tls);
    m_caFile->setText(s.caFile);
    m_certFile->setText(s.certFile);
    m_keyFile->setText(s.keyFile);
    m_user->setText(s.user);
    m_password->clear();
    m_passwordEdited = false;
    m_password->setPlaceholderText(Secrets::read(QString::fromLatin1(MqttDoor::kPasswordKey)).isEmpty() ? QString()
                                                                                               : tr("(kept; type to change)"));
    m_node->setText(s.node);
    m_node->setPlaceholderText(MqttSettings().nodeName());
    m_base->setText(s.baseTopic);
    m_base->setPlaceholderText(s.base()); // what an empty base topic stands for
    m_homeAssistant->setChecked(s.homeAssistant);
    for (QLineEdit* file : {m_caFile, m_certFile, m_keyFile})
        file->parentWidget()->setEnabled(s.tls);
    showStatus();
}

void MqttDialog::showStatus()
{
    if (!isVisible() && !m_status->text().isEmpty())
        return; // nobody looks: the settings file is not read each second
    if (!m_door) {
        m_status->setText(tr("Not connected"));
        return;
    }
    const MqttSettings& s = m_door->settings();
    if (!s.enabled)
        m_status->setText(tr("Off"));
    else if (m_door->isConnected())
        m_status->setText(tr("Connected to %1:%2, topics under %3").arg(s.host).arg(s.port).arg(m_door->base()));
    else
        m_status->setText(tr("Not connected: %1").arg(m_door->problem().isEmpty() ? tr("connecting...") : m_door->problem()));
}

bool MqttDialog::store()
{
    if (m_enabled->isChecked() && m_host->text().trimmed().isEmpty()) {
        DialogService::message(tr("Name the MQTT broker to connect to."));
        return false;
    }
    if (m_tls->isChecked()) {
        for (QLineEdit* file : {m_caFile, m_certFile, m_keyFile})
            if (!file->text().isEmpty() && !QFileInfo(file->text()).isReadable()) {
                DialogService::message(tr("The file %1 cannot be read.").arg(file->text()));
                return false;
            }
    }
    MqttSettings s;
    s.enabled = m_enabled->isChecked();
    s.host = m_host->text().trimmed();
    s.port = m_port->value();
    s.tls = m_tls->isChecked();
    s.caFile = m_caFile->text().trimmed();
    s.certFile = m_certFile->text().trimmed();
    s.keyFile = m_keyFile->text().trimmed();
    s.user = m_user->text().trimmed();
    s.node = m_node->text().trimmed();
    s.baseTopic = m_base->text().trimmed();
    s.homeAssistant = m_homeAssistant->isChecked();
    if (!s.write()) {
        DialogService::message(tr("The settings could not be saved."));
        return false;
    }
    if (m_passwordEdited)
        Secrets::store(QString::fromLatin1(MqttDoor::kPasswordKey), m_password->text());
    return true;
}

void MqttDialog::okClicked()
{
    if (!store())
        return;
    if (m_door)
        m_door->applySetting();
    emit applied();
    close();
}
