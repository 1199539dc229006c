#pragma once

#include "settings/Schedule.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class ScheduleWeek;
class Scheduler;

// The "Schedules" dialog (from More Options): the rotations with hours, one at a time. Each has a
// name, a favourite list with its run choices, the windows it runs in (none: the run dialog's),
// its hours as rules a line each ("Mon-Fri 08:00-18:00"), the days it is left out, and where it
// starts; the week grid shows what the rules make of the week. OK checks every schedule, keeps
// them in Schedules.conf and hands them to the scheduler; Cancel leaves everything as it was.
class SchedulesDialog : public QWidget
{
    Q_OBJECT

public:
    SchedulesDialog(QWidget* owner, Scheduler* scheduler, const QStringList& listNames);

    // The schedules as the dialog holds them now (the one shown included).
    QList<Schedule> edited();
    // Checks and keeps them (OK); false, with the person told why, when one cannot be kept.
    bool save();

    QListWidget* schedulesBox() const { return m_schedules; }

private:
    void addSchedule();
    void removeSchedule();
    void showSchedule(int row);
    // What the controls show goes back into the schedule shown.
    void keepShown();
    void showProblems();
    void okClicked();

    QPointer<Scheduler> m_scheduler;
    QList<Schedule> m_edited;
    int m_shown = -1;
    bool m_filling = false;

    QListWidget* m_schedules;
    QPushButton* m_add;
    QPushButton* m_remove;
    QWidget* m_form;
    QLineEdit* m_name;
    QCheckBox* m_enabled;
    QComboBox* m_list;
    QSpinBox* m_interval;
    QCheckBox* m_loop;
    QCheckBox* m_several;
    QCheckBox* m_keep;
    std::array<QCheckBox*, 8> m_windows{};
    QComboBox* m_start;
    QPlainTextEdit* m_rules;
    QPlainTextEdit* m_leftOut;
    QLabel* m_problems;
    ScheduleWeek* m_week;
};
