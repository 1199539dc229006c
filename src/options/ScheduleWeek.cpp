#include "ScheduleWeek.h"

#include <QPainter>

namespace {
constexpr int kQuarters = 96;
constexpr int kHeader = 18; // the days' names
constexpr int kHourColumn = 34;
} // namespace

ScheduleWeek::ScheduleWeek(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ScheduleWeek"));
    setAccessibleName(tr("The week of the schedule"));
    setMinimumSize(kHourColumn + 7 * 24, kHeader + 96);
}

void ScheduleWeek::show(const Schedule& schedule, const QDate& day)
{
    m_monday = day.addDays(1 - day.dayOfWeek());
    QStringList said;
    for (int d = 0; d < 7; ++d) {
        int filledQuarters = 0;
        for (int q = 0; q < kQuarters; ++q) {
            m_filled[d][q] = schedule.activeAt(QDateTime(m_monday.addDays(d), QTime(q / 4, q % 4 * 15)));
            filledQuarters += m_filled[d][q];
        }
        if (filledQuarters)
            said << QStringLiteral("%1 %2 h").arg(QLocale::c().dayName(d + 1, QLocale::ShortFormat)).arg(filledQuarters / 4.0);
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
    return {kHourColumn + 7 * 48, kHeader + 2 * kQuarters};
}

void ScheduleWeek::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QPalette& colors = palette();
    p.fillRect(rect(), colors.color(QPalette::Base));
    const int dayWidth = std::max(1, (width() - kHourColumn) / 7);
    const double quarterHeight = double(height() - kHeader) / kQuarters;
    p.setPen(colors.color(QPalette::Text));
    for (int d = 0; d < 7; ++d) {
        const QRect header(kHourColumn + d * dayWidth, 0, dayWidth, kHeader);
        p.drawText(header, Qt::AlignCenter, QLocale::c().dayName(d + 1, QLocale::ShortFormat));
        for (int q = 0; q < kQuarters; ++q)
            if (m_filled[d][q])
                p.fillRect(QRectF(kHourColumn + d * dayWidth + 1, kHeader + q * quarterHeight, dayWidth - 2,
                                  quarterHeight + 0.5),
                           colors.color(QPalette::Highlight));
    }
    p.setPen(colors.color(QPalette::Mid));
    for (int hour = 0; hour <= 24; hour += 6) {
        const int y = kHeader + int(hour * 4 * quarterHeight);
        p.drawLine(kHourColumn, y, kHourColumn + 7 * dayWidth, y);
        if (hour < 24) {
            p.setPen(colors.color(QPalette::Text));
            p.drawText(QRect(0, y, kHourColumn - 4, 14), Qt::AlignRight | Qt::AlignTop,
                       QStringLiteral("%1:00").arg(hour, 2, 10, QLatin1Char('0')));
            p.setPen(colors.color(QPalette::Mid));
        }
    }
    for (int d = 0; d <= 7; ++d)
        p.drawLine(kHourColumn + d * dayWidth, kHeader, kHourColumn + d * dayWidth, height() - 1);
}
