#pragma once

#include "settings/ScreenPlaces.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <array>
#include <functional>

class BrowserWindow;
class QScreen;

// Keeps each browsing slot's window on the monitor it is fixed to (Screens.conf): it puts a
// window in its place when the window comes, and again, within a second, whenever the system adds,
// removes or changes a monitor. A window whose monitor is missing waits on the primary monitor
// or out of sight, as its slot says, and goes back when its monitor comes back; nothing else of
// the window changes (its page, its history, its rotation go on). What it does goes to the log.
class ScreenPlacer : public QObject
{
    Q_OBJECT

public:
    explicit ScreenPlacer(QObject* parent = nullptr);

    // The monitors as the system has them now, the primary one marked.
    static QList<Monitor> systemMonitors();

    // The slots' places; every window takes its new place at once.
    void setPlaces(const QList<SlotPlace>& places);
    const QList<SlotPlace>& places() const { return m_places; }
    // The slot's window from now on (null: the slot has none); it is put in its place at once.
    void attach(int slot, BrowserWindow* window);
    // Where the slot's window goes among the monitors there are now.
    WindowPlace placeOf(int slot) const;

    // For tests: the monitors are these instead of the system's, until set to none.
    void setMonitorsForTest(const std::function<QList<Monitor>()>& monitors);
    // Puts every window in its place now, with the monitors as they are (the system's changes
    // come here after a short while, so that a burst of them costs one placing).
    void placeAll();

    // The monitors there are now: the system's, or the test's.
    QList<Monitor> monitors() const;

signals:
    // Every window was put in its place again.
    void placed();

private:
    void place(int slot, const QList<Monitor>& monitors);
    void watchScreen(QScreen* screen);
    void monitorsChanged();

    QList<SlotPlace> m_places;
    std::array<QPointer<BrowserWindow>, 9> m_windows{};
    std::array<WindowPlace, 9> m_placed{}; // as last given to each window
    std::function<QList<Monitor>()> m_testMonitors;
    QTimer m_settle;
};
