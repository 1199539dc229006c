#include "RemotePageDialog.h"

#include "core/DialogService.h"
#include "doors/RemotePage.h"
#include "settings/RemoteSettings.h"
#include "widgets/QrCode.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

RemotePageDialog::RemotePageDialog(QWidget* owner, RemotePage* page) : QWidget(owner, Qt::Dialog), m_page(page)
{
    setObjectName(QStringLiteral("RemotePageDialog"));
    setWindowTitle(tr("Remote Page"));
    auto* form = new QFormLayout;
    m_enabled = new QCheckBox(tr("Control Vantrel from a browser"), this);
    m_enabled->setObjectName(QStringLiteral("RemoteEnabledChk"));
    m_enabled->setToolTip(tr("A page to pause, skip, stop, run a list or open an address, from a phone or another "
                             "computer; it needs the token in its address"));
    form->addRow(m_enabled);
    m_localNetwork = new QCheckBox(tr("Also from other devices on the local network"), this);
    m_localNetwork->setObjectName(QStringLiteral("RemoteLanChk"));
    m_localNetwork->setToolTip(tr("Off, only this computer can open the page"));
    form->addRow(m_localNetwork);
    m_port = new QSpinBox(this);
    m_port->setObjectName(QStringLiteral("RemotePortSpin"));
    m_port->setRange(1024, 65535);
    form->addRow(tr("Port:"), m_port);
    m_address = new QLabel(this);
    m_address->setObjectName(QStringLiteral("RemoteAddress"));
    m_address->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_address->setWordWrap(true);
    form->addRow(tr("Open:"), m_address);
    m_qr = new QLabel(this);
    m_qr->setObjectName(QStringLiteral("RemoteQr"));
    m_qr->setAccessibleName(tr("The address as a QR code"));
    form->addRow(QString(), m_qr);
    auto* renew = new QPushButton(tr("New Token"), this);
    renew->setObjectName(QStringLiteral("RemoteRenewBtn"));
    renew->setToolTip(tr("A new address: whoever had the old one can no longer use the page"));
    connect(renew, &QPushButton::clicked, this, &RemotePageDialog::renewToken);
    form->addRow(QString(), renew);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    connect(buttons, &QDialogButtonBox::accepted, this, &RemotePageDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    showSettings();
}

void RemotePageDialog::showSettings()
{
    const RemoteSettings s = RemoteSettings::read();
    m_enabled->setChecked(s.enabled);
    m_localNetwork->setChecked(s.localNetwork);
    m_port->setValue(s.port);
    showAddress();
}

void RemotePageDialog::showAddress()
{
    if (!m_page || !m_page->isServing()) {
        m_address->setText(tr("Not served now"));
        m_qr->clear();
        return;
    }
    const QString address = m_page->pageAddress();
    m_address->setText(address);
    m_qr->setPixmap(QPixmap::fromImage(QrCode::image(address, 4)));
}

bool RemotePageDialog::store()
{
    RemoteSettings s;
    s.enabled = m_enabled->isChecked();
    s.localNetwork = m_localNetwork->isChecked();
    s.port = m_port->value();
    if (!s.write()) {
        DialogService::message(tr("The settings could not be saved."));
        return false;
    }
    return true;
}

void RemotePageDialog::renewToken()
{
    if (!m_page)
        return;
    m_page->renewToken();
    showAddress();
}

void RemotePageDialog::okClicked()
{
    if (!store())
        return;
    if (m_page) {
        m_page->applySetting();
        if (m_enabled->isChecked() && !m_page->isServing()) {
            DialogService::message(tr("The page cannot be served on port %1: it is taken or not allowed.").arg(m_port->value()));
            return;
        }
    }
    showAddress();
    close();
}
