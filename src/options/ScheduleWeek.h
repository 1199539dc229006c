#pragma once

#include "settings/Schedule.h"

#include <QDate>
#include <QWidget>

// The week of a schedule as a grid: a column a day from Monday, the hours down, the times the
// rotation runs filled in by quarter hours (worked out by the schedule itself minute by minute, so
// the grid shows what will happen: nights past midnight, short rules, the days left out of the week
// shown).
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
    int header() const;
    int hourColumn() const;

    bool m_filled[7][96] = {};
    QDate m_monday;
};
