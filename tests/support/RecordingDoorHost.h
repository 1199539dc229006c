#pragma once

#include "doors/DoorCommands.h"

#include <QList>
#include <QStringList>

// What a door asks of the window, kept for a test to read: raises with their tokens, quits, runs
// of the start-up list (which answer as `startupListChosen` says).
struct RecordingDoorHost : DoorHost
{
    QStringList raised;
    QList<bool> quits;
    bool startupListChosen = false;
    int startupRuns = 0;

    void raise(const QString& token) override { raised << token; }
    void quit(bool discard) override { quits << discard; }
    bool runStartupList() override
    {
        ++startupRuns;
        return startupListChosen;
    }
};
