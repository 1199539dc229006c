#pragma once

#include "doors/DoorCommands.h"

#include <QPointer>

class Vantrel1;

// What the doors from outside ask of the main window: to come up (with the desktop's token, so
// that the desktop lets it), and to close without asking anybody.
class WindowDoorHost : public DoorHost
{
public:
    explicit WindowDoorHost(Vantrel1* window) : m_window(window) {}
    void raise(const QString& activationToken) override;
    void quit(bool discard) override;
    bool runStartupList() override;

private:
    QPointer<Vantrel1> m_window;
};
