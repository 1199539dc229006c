#pragma once

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QSpinBox;
class RemotePage;

// The "Remote Page" dialog of More Options: "Control Vantrel from a browser" (off until ticked), on
// this machine only or from the local network, the port; the address to open with its token, as
// text and as a QR code for a phone; and a new token, which locks out whoever had the old one.
class RemotePageDialog : public QWidget
{
    Q_OBJECT

public:
    RemotePageDialog(QWidget* owner, RemotePage* page);

    void showSettings();
    bool store();

private:
    void okClicked();
    void renewToken();
    void showAddress();

    QPointer<RemotePage> m_page;
    QCheckBox* m_enabled;
    QCheckBox* m_localNetwork;
    QSpinBox* m_port;
    QLabel* m_address;
    QLabel* m_qr;
};
