#include "ScheduleWeek.h"

#include <QPainter>

namespace {
constexpr int kQuarters = 96;

// "10 h", "1 h 30 min", "5 min".
QString duration(int minutes)
{
    if (minutes % 60 == 0)
        return QStringLiteral("%1 h").arg(minutes / 60);
    if (minutes < 60)
        return QStringLiteral("%1 min").arg(minutes);
    return QStringLiteral("%1 h %2 min").arg(minutes / 60).arg(minutes % 60);
}
} // namespace

int ScheduleWeek::header() const
{
    return fontMetrics().height() + 4; // the days' names
}

int ScheduleWeek::hourColumn() const
{
    return fontMetrics().horizontalAdvance(QStringLiteral("00:00")) + 8;
}

ScheduleWeek::ScheduleWeek(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ScheduleWeek"));
    setAccessibleName(tr("The week of the schedule"));
    setMinimumSize(hourColumn() + 7 * 24, header() + 144);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ScheduleWeek::show(const Schedule& schedule, const QDate& day)
{
    m_monday = day.addDays(1 - day.dayOfWeek());
    QStringList said;
    for (int d = 0; d < 7; ++d) {
        int minutes = 0;
        for (int q = 0; q < kQuarters; ++q) {
            // A quarter hour is filled when the rotation runs in any minute of it: a rule of a few
            // minutes shows too.
            m_filled[d][q] = false;
            for (int m = 0; m < 15; ++m)
                if (schedule.activeAt(QDateTime(m_monday.addDays(d), QTime(q / 4, q % 4 * 15 + m)))) {
                    m_filled[d][q] = true;
                    ++minutes;
                }
        }
        if (minutes)
            said << QStringLiteral("%1 %2").arg(QLocale::c().dayName(d + 1, QLocale::ShortFormat), duration(minutes));
    }
    // A screen reader hears the week in words.
    setAccessibleDescription(said.isEmpty() ? tr("It does not run this week")
                                            : tr("It runs this week: %1").arg(said.join(QStringLiteral(", "))));
    update();
}

bool ScheduleWeek::filled(int dayOfWeek, int quarter) const
{
    return dayOfWeek >= 1 && dayOfWeek <= 7 && quarter >= 0 && quarter < kQuarters && m_filled[dayOfWeek - 1][quarter];
}

QSize ScheduleWeek::sizeHint() const
{
    return {hourColumn() + 7 * 48, header() + 2 * kQuarters};
}

void ScheduleWeek::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QPalette& colors = palette();
    p.fillRect(rect(), colors.color(QPalette::Base));
    const int left = hourColumn();
    const int top = header();
    const int dayWidth = std::max(1, (width() - left) / 7);
    const double quarterHeight = double(height() - top) / kQuarters;
    p.setPen(colors.color(QPalette::Text));
    for (int d = 0; d < 7; ++d) {
        const QRect dayName(left + d * dayWidth, 0, dayWidth, top);
        p.drawText(dayName, Qt::AlignCenter, QLocale::c().dayName(d + 1, QLocale::ShortFormat));
        for (int q = 0; q < kQuarters; ++q)
            if (m_filled[d][q])
                p.fillRect(QRectF(left + d * dayWidth + 1, top + q * quarterHeight, dayWidth - 2,
                                  quarterHeight + 0.5),
                           colors.color(QPalette::Highlight));
    }
    p.setPen(colors.color(QPalette::Mid));
    for (int hour = 0; hour <= 24; hour += 6) {
        const int y = top + int(hour * 4 * quarterHeight);
        p.drawLine(left, y, left + 7 * dayWidth, y);
        if (hour < 24) {
            p.setPen(colors.color(QPalette::Text));
            p.drawText(QRect(0, y, left - 4, fontMetrics().height()), Qt::AlignRight | Qt::AlignTop,
                       QStringLiteral("%1:00").arg(hour, 2, 10, QLatin1Char('0')));
            p.setPen(colors.color(QPalette::Mid));
        }
    }
    for (int d = 0; d <= 7; ++d)
        p.drawLine(left + d * dayWidth, top, left + d * dayWidth, height() - 1);
}
