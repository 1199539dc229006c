#include "CalendarFrame.h"

#include "core/Clock.h"

#include <QCalendarWidget>
#include <QVBoxLayout>

CalendarFrame::CalendarFrame(QWidget* parent) : QGroupBox(parent)
{
    setObjectName(QStringLiteral("Frame7"));
    auto* calendarLayout = new QVBoxLayout(this);
    calendarLayout->setContentsMargins(4, 4, 4, 4);
    hide();
}

QCalendarWidget* CalendarFrame::Calendar1()
{
    if (!m_calendar) {
        m_calendar = new QCalendarWidget(this);
        m_calendar->setObjectName(QStringLiteral("Calendar1"));
        m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        if (m_calendarDate.isValid())
            m_calendar->setSelectedDate(m_calendarDate);
        paintCalendar();
        layout()->addWidget(m_calendar);
    }
    return m_calendar;
}

void CalendarFrame::setCalendarColors(const QColor& back, const QColor& text)
{
    m_calendarBack = back;
    m_calendarText = text;
    if (m_calendar)
        paintCalendar();
}

void CalendarFrame::paintCalendar()
{
    // The month, its title and the days take the list colours.
    QPalette palette = m_calendar->palette();
    for (QPalette::ColorRole role :
         {QPalette::Base, QPalette::AlternateBase, QPalette::Window, QPalette::Button})
        if (m_calendarBack.isValid())
            palette.setColor(role, m_calendarBack);
    for (QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        if (m_calendarText.isValid())
            palette.setColor(role, m_calendarText);
    m_calendar->setPalette(palette);
    // The title row (month and year) is painted in the highlight colours by the calendar itself:
    // it takes the list colours too.
    if (QWidget* title = m_calendar->findChild<QWidget*>(QStringLiteral("qt_calendar_navigationbar"))) {
        QPalette bar = title->palette();
        for (QPalette::ColorRole role : {QPalette::Highlight, QPalette::Window, QPalette::Button})
            if (m_calendarBack.isValid())
                bar.setColor(role, m_calendarBack);
        for (QPalette::ColorRole role :
             {QPalette::HighlightedText, QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
            if (m_calendarText.isValid())
                bar.setColor(role, m_calendarText);
        title->setPalette(bar);
        for (QWidget* part : title->findChildren<QWidget*>())
            part->setPalette(bar);
    }
}

void CalendarFrame::setCalendarDate(const QDate& date)
{
    m_calendarDate = date;
    if (m_calendar)
        m_calendar->setSelectedDate(date);
}

void CalendarFrame::toggle()
{
    Calendar1();
    setVisible(!isVisible());
    if (isVisible())
        showTime();
}

void CalendarFrame::showTime()
{
    setTitle(u' ' + Clock::timeOfDay().toString(QStringLiteral("HH:mm:ss")) + u' ');
}
