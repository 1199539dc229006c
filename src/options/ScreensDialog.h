#pragma once

#include "settings/ScreenPlaces.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QTreeWidget;
class ScreenPlacer;

// The "Screens" dialog (from More Options): the monitors as the system has them now, and for each
// browsing window the monitor it is fixed to, full screen or at a rectangle of it, and whether it
// waits on the primary monitor or out of sight while its monitor is missing. A monitor that a
// window is fixed to and that is not there now is marked so. Under Wayland, where the compositor
// decides where windows go, it says that a rectangle has no effect there. OK keeps the places in
// Screens.conf and moves the windows at once; Cancel leaves everything as it was. Below, for each
// window, what it shows while no schedule runs in it: the desktop left be, black, or a page.
class ScreensDialog : public QWidget
{
    Q_OBJECT

public:
    ScreensDialog(QWidget* owner, ScreenPlacer* placer);

    // The places as the controls show them.
    QList<SlotPlace> edited() const;
    // Keeps them (OK); false, with the person told why, when the file could not be written.
    bool save();

    // The monitor choices of a window (1 to 8): "Not fixed", each monitor there is, a missing one.
    QComboBox* monitorBox(int slot) const { return m_rows[size_t(slot - 1)].monitor; }

private:
    struct Row
    {
        QComboBox* monitor = nullptr;
        QComboBox* mode = nullptr;
        std::array<QSpinBox*, 4> rect{}; // x, y, width, height on the monitor
        QComboBox* missing = nullptr;
        QComboBox* idle = nullptr; // with nothing scheduled: the desktop, black, a page
        QLineEdit* idlePage = nullptr;
    };
    void fill();
    void showRowState(int slot);
    void okClicked();

    QPointer<ScreenPlacer> m_placer;
    QList<Monitor> m_monitors;
    QList<MonitorId> m_choices; // behind each monitor box's items after "Not fixed"
    QTreeWidget* m_list;
    QLabel* m_waylandNote;
    std::array<Row, 8> m_rows{};
};
