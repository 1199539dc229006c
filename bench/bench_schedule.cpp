// What should run now, for 1,000 rules over 8 rotations (one a window), worked out as the
// scheduler does each second; beside a floor that only asks each rule whether it starts on the day.
#include "BenchSupport.h"
#include "settings/Schedule.h"

#include <QCoreApplication>
#include <QRandomGenerator>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QRandomGenerator random(2026);
    QList<Schedule> schedules;
    for (int slot = 1; slot <= 8; ++slot) {
        Schedule schedule;
        schedule.name = QStringLiteral("Wall %1").arg(slot);
        schedule.list = schedule.name;
        schedule.windows = {slot};
        for (int i = 0; i < 125; ++i) {
            ScheduleRule rule;
            rule.days = quint8(random.bounded(1, 128));
            rule.from = QTime(random.bounded(24), random.bounded(60));
            rule.to = QTime(random.bounded(24), random.bounded(60));
            schedule.rules << rule;
        }
        for (int day = 0; day < 20; ++day)
            schedule.leftOut << QDate(2026, 12, 1).addDays(day * 3);
        schedules << schedule;
    }
    constexpr int kRuns = 201;
    QDateTime moment(QDate(2026, 11, 25), QTime(0, 0));
    int found = 0;
    const double rulesMs = medianMs(kRuns, [&] {
        moment = moment.addSecs(397); // another moment each time, round the week
        found += ScheduleRules::activeAt(schedules, moment).size();
    });
    int starting = 0;
    const double floorMs = medianMs(kRuns, [&] {
        moment = moment.addSecs(397);
        const int day = moment.date().dayOfWeek();
        for (const Schedule& schedule : schedules)
            for (const ScheduleRule& rule : schedule.rules)
                starting += rule.startsOn(day);
    });
    std::printf("what runs now: 8 rotations, 1,000 rules, 20 days left out each; medians of %d looks "
                "(%d rotations found in all, %d day matches)\n", kRuns, found, starting);
    report("what runs now", rulesMs, "day of each rule", floorMs, 10.0);
    reportUnder("what runs now", rulesMs, 1.0);
    return 0;
}
