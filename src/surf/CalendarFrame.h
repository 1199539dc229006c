#pragma once

#include <QColor>
#include <QDate>
#include <QGroupBox>

class QCalendarWidget;

// The calendar panel of the Surf tab (Frame7): a month calendar in the list colours under a title
// that shows the time of day while the panel is open.
class CalendarFrame : public QGroupBox
{
    Q_OBJECT

public:
    explicit CalendarFrame(QWidget* parent);

    // The month calendar; made when first needed, since most starts never show it.
    QCalendarWidget* Calendar1();
    // The day the calendar shows (set to today when the main window loads).
    void setCalendarDate(const QDate& date);
    // The calendar's background and text colours (now, or when it is made).
    void setCalendarColors(const QColor& back, const QColor& text);
    // Shows or hides the panel; shown, its title tells the time.
    void toggle();
    // The title tells the time now.
    void showTime();

private:
    void paintCalendar();

    QCalendarWidget* m_calendar = nullptr;
    QDate m_calendarDate;
    QColor m_calendarBack;
    QColor m_calendarText;
};
