#pragma once

#include "settings/MqttSettings.h"

#include <QPointer>
#include <QWidget>

class MqttDoor;
class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QSpinBox;

// The "MQTT" dialog of More Options: the broker Vantrel connects to (off until ticked), TLS with its
// files, the user and password (the password kept in the desktop's secret store, never in
// Vantrel.conf), the node's name and the base topic, Home Assistant's discovery, and how the
// connection stands now. OK stores it and the door follows at once.
class MqttDialog : public QWidget
{
    Q_OBJECT

public:
    MqttDialog(QWidget* owner, MqttDoor* door);

    // Shows the stored settings and how the connection stands.
    void showSettings();
    // What the controls show, checked; false (and a message) when it cannot be used.
    bool store();

signals:
    void applied();

private:
    QLineEdit* fileRow(const QString& name, const QString& label, QFormLayout* form);
    void okClicked();
    void showStatus();

    QPointer<MqttDoor> m_door;
    QCheckBox* m_enabled;
    QLineEdit* m_host;
    QSpinBox* m_port;
    QCheckBox* m_tls;
    QLineEdit* m_caFile;
    QLineEdit* m_certFile;
    QLineEdit* m_keyFile;
    QLineEdit* m_user;
    QLineEdit* m_password;
    QLineEdit* m_node;
    QLineEdit* m_base;
    QCheckBox* m_homeAssistant;
    QLabel* m_status;
    bool m_passwordEdited = false;
};
