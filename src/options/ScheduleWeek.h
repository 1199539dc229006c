#pragma once

#include "settings/Schedule.h"

#include <QDate>
#include <QWidget>

// The week of a schedule as a grid: a column a day from Monday, the hours down, the times the
// rotation runs filled in (worked out by the schedule itself, quarter hour by quarter hour, so the
// grid shows what will happen: nights past midnight, the days left out of the week shown).
class ScheduleWeek : public QWidget
{
    Q_OBJECT

public:
    explicit ScheduleWeek(QWidget* parent = nullptr);

    // The schedule shown, in the week that starts on the Monday of `day`.
    void show(const Schedule& schedule, const QDate& day);
    // Whether the quarter hour `quarter` (0 to 95) of day `dayOfWeek` (1 Monday to 7 Sunday) is filled.
    bool filled(int dayOfWeek, int quarter) const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_filled[7][96] = {};
    QDate m_monday;
};
