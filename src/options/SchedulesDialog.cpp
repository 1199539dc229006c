#include "SchedulesDialog.h"

#include "ScheduleWeek.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "schedule/Scheduler.h"
#include "settings/SchedulesFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

QCheckBox* box(const char* name, const QString& text, QWidget* parent)
{
    auto* check = new QCheckBox(text, parent);
    check->setObjectName(QString::fromLatin1(name));
    return check;
}

} // namespace

SchedulesDialog::SchedulesDialog(QWidget* owner, Scheduler* scheduler, const QStringList& listNames)
    : QWidget(owner, Qt::Dialog), m_scheduler(scheduler)
{
    setObjectName(QStringLiteral("SchedulesDialog"));
    setWindowTitle(tr("Schedules"));
    m_edited = scheduler ? scheduler->schedules() : SchedulesFile::read(SchedulesFile::path());

    m_schedules = new QListWidget(this);
    m_schedules->setObjectName(QStringLiteral("Schedules"));
    m_schedules->setAccessibleName(tr("Schedules"));
    m_add = new QPushButton(tr("Add"), this);
    m_add->setObjectName(QStringLiteral("AddScheduleBtn"));
    m_add->setToolTip(tr("A new schedule for a favourite list"));
    m_remove = new QPushButton(tr("Remove"), this);
    m_remove->setObjectName(QStringLiteral("RemoveScheduleBtn"));
    m_remove->setToolTip(tr("Remove the schedule shown"));
    auto* left = new QVBoxLayout;
    left->addWidget(m_schedules, 1);
    auto* addRemove = new QHBoxLayout;
    addRemove->addWidget(m_add);
    addRemove->addWidget(m_remove);
    left->addLayout(addRemove);

    m_form = new QWidget(this);
    auto* form = new QFormLayout(m_form);
    m_name = new QLineEdit(m_form);
    m_name->setObjectName(QStringLiteral("ScheduleName"));
    form->addRow(tr("Name:"), m_name);
    m_enabled = box("ScheduleEnabled", tr("Run this list in its hours"), m_form);
    form->addRow(m_enabled);
    m_list = new QComboBox(m_form);
    m_list->setObjectName(QStringLiteral("ScheduleFavoriteList"));
    m_list->addItems(listNames);
    form->addRow(tr("Favorite list:"), m_list);
    m_interval = new QSpinBox(m_form);
    m_interval->setObjectName(QStringLiteral("ScheduleInterval"));
    m_interval->setRange(1, 24 * 3600);
    m_interval->setSuffix(tr(" s"));
    m_interval->setToolTip(tr("How long each page shows, unless the page has a time of its own"));
    form->addRow(tr("Each page:"), m_interval);
    m_loop = box("ScheduleLoop", tr("Loop"), m_form);
    m_several = box("ScheduleSeveral", tr("Each page in a window of its own"), m_form);
    m_keep = box("ScheduleKeep", tr("Keep pages loaded"), m_form);
    form->addRow(m_loop);
    form->addRow(m_several);
    form->addRow(m_keep);
    auto* windows = new QWidget(m_form);
    auto* windowRow = new QHBoxLayout(windows);
    windowRow->setContentsMargins(0, 0, 0, 0);
    for (int slot = 1; slot <= 8; ++slot) {
        m_windows[size_t(slot - 1)] = box("", QString::number(slot), windows);
        m_windows[size_t(slot - 1)]->setObjectName(QStringLiteral("ScheduleWindow_%1").arg(slot));
        m_windows[size_t(slot - 1)]->setAccessibleName(tr("Window %1").arg(slot));
        windowRow->addWidget(m_windows[size_t(slot - 1)]);
    }
    windows->setToolTip(tr("The windows the list runs in; none: the window of the run dialog"));
    form->addRow(tr("Windows:"), windows);
    m_start = new QComboBox(m_form);
    m_start->setObjectName(QStringLiteral("ScheduleStart"));
    m_start->addItems({tr("At its first page"), tr("Where it stopped today")});
    form->addRow(tr("Its hours begin:"), m_start);
    m_rules = new QPlainTextEdit(m_form);
    m_rules->setObjectName(QStringLiteral("ScheduleRules"));
    m_rules->setAccessibleName(tr("Hours"));
    m_rules->setPlaceholderText(tr("One rule a line, as\nMon-Fri 08:00-18:00\nSat,Sun 22:00-06:00"));
    m_rules->setToolTip(tr("Days (Mon-Fri, Sat,Sun, Daily) and a time range; a range past midnight goes on "
                           "into the next morning"));
    m_rules->setTabChangesFocus(true);
    form->addRow(tr("Hours:"), m_rules);
    m_leftOut = new QPlainTextEdit(m_form);
    m_leftOut->setObjectName(QStringLiteral("ScheduleLeftOut"));
    m_leftOut->setAccessibleName(tr("Days left out"));
    m_leftOut->setPlaceholderText(tr("Holidays, a date a line, as 2026-12-25"));
    m_leftOut->setTabChangesFocus(true);
    m_leftOut->setMaximumHeight(70);
    form->addRow(tr("Days left out:"), m_leftOut);
    m_problems = new QLabel(m_form);
    m_problems->setObjectName(QStringLiteral("ScheduleProblems"));
    m_problems->setWordWrap(true);
    m_problems->setStyleSheet(QStringLiteral("color: palette(highlighted-text); background: palette(highlight);"));
    m_problems->hide();
    form->addRow(m_problems);
    m_week = new ScheduleWeek(m_form);
    form->addRow(m_week);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    auto* columns = new QHBoxLayout;
    columns->addLayout(left, 1);
    columns->addWidget(m_form, 3);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addWidget(buttons);

    for (const Schedule& schedule : m_edited)
        m_schedules->addItem(schedule.name);
    connect(m_schedules, &QListWidget::currentRowChanged, this, &SchedulesDialog::showSchedule);
    connect(m_add, &QPushButton::clicked, this, &SchedulesDialog::addSchedule);
    connect(m_remove, &QPushButton::clicked, this, &SchedulesDialog::removeSchedule);
    connect(buttons, &QDialogButtonBox::accepted, this, &SchedulesDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    // Every change shows at once: in the list's name, the week and the problems.
    const auto changed = [this] {
        if (m_filling)
            return;
        keepShown();
        showProblems();
    };
    connect(m_name, &QLineEdit::textChanged, this, changed);
    connect(m_rules, &QPlainTextEdit::textChanged, this, changed);
    connect(m_leftOut, &QPlainTextEdit::textChanged, this, changed);
    connect(m_enabled, &QCheckBox::toggled, this, changed);
    m_schedules->setCurrentRow(m_edited.isEmpty() ? -1 : 0);
    showSchedule(m_schedules->currentRow());
    resize(780, 700);
}

void SchedulesDialog::addSchedule()
{
    keepShown();
    Schedule schedule;
    schedule.list = m_list->count() ? m_list->itemText(0) : QString();
    schedule.name = tr("Schedule %1").arg(m_edited.size() + 1);
    schedule.intervalSeconds = 30;
    schedule.rules << *ScheduleRule::fromText(QStringLiteral("Mon-Fri 08:00-18:00"));
    m_edited << schedule;
    m_schedules->addItem(schedule.name);
    m_schedules->setCurrentRow(int(m_edited.size()) - 1);
    m_name->setFocus();
    m_name->selectAll();
}

void SchedulesDialog::removeSchedule()
{
    const int row = m_schedules->currentRow();
    if (row < 0 || row >= m_edited.size())
        return;
    m_shown = -1; // what the controls show goes with it
    m_edited.removeAt(row);
    delete m_schedules->takeItem(row);
    showSchedule(m_schedules->currentRow());
}

void SchedulesDialog::showSchedule(int row)
{
    keepShown();
    m_shown = row >= 0 && row < m_edited.size() ? row : -1;
    m_form->setEnabled(m_shown >= 0);
    m_remove->setEnabled(m_shown >= 0);
    if (m_shown < 0) {
        m_week->show(Schedule{}, Clock::today());
        return;
    }
    const Schedule& s = m_edited[m_shown];
    m_filling = true;
    m_name->setText(s.name);
    m_enabled->setChecked(s.enabled);
    if (m_list->findText(s.list) < 0)
        m_list->addItem(s.list); // a list that is gone still shows, to be chosen again
    m_list->setCurrentIndex(m_list->findText(s.list));
    m_interval->setValue(s.intervalSeconds);
    m_loop->setChecked(s.loop);
    m_several->setChecked(s.severalWindows);
    m_keep->setChecked(s.keepPagesLoaded);
    for (int slot = 1; slot <= 8; ++slot)
        m_windows[size_t(slot - 1)]->setChecked(s.windows.contains(slot));
    m_start->setCurrentIndex(s.start == Schedule::Start::WhereItStoppedToday ? 1 : 0);
    m_rules->setPlainText(ScheduleRules::linesOf(s.rules));
    m_leftOut->setPlainText(ScheduleRules::linesOf(s.leftOut));
    m_filling = false;
    showProblems();
}

void SchedulesDialog::keepShown()
{
    if (m_shown < 0 || m_shown >= m_edited.size() || m_filling)
        return;
    Schedule& s = m_edited[m_shown];
    s.name = m_name->text().trimmed();
    s.enabled = m_enabled->isChecked();
    s.list = m_list->currentText();
    s.intervalSeconds = m_interval->value();
    s.loop = m_loop->isChecked();
    s.severalWindows = m_several->isChecked();
    s.keepPagesLoaded = m_keep->isChecked();
    s.windows.clear();
    for (int slot = 1; slot <= 8; ++slot)
        if (m_windows[size_t(slot - 1)]->isChecked())
            s.windows << slot;
    s.start = m_start->currentIndex() == 1 ? Schedule::Start::WhereItStoppedToday : Schedule::Start::AtFirstPage;
    s.rules = ScheduleRules::rulesFromLines(m_rules->toPlainText(), nullptr);
    s.leftOut = ScheduleRules::datesFromLines(m_leftOut->toPlainText(), nullptr);
    if (QListWidgetItem* item = m_schedules->item(m_shown))
        item->setText(s.name.isEmpty() ? tr("(no name)") : s.name);
}

void SchedulesDialog::showProblems()
{
    QStringList problems;
    ScheduleRules::rulesFromLines(m_rules->toPlainText(), &problems);
    ScheduleRules::datesFromLines(m_leftOut->toPlainText(), &problems);
    m_problems->setText(problems.join(u'\n'));
    m_problems->setVisible(!problems.isEmpty());
    if (m_shown >= 0)
        m_week->show(m_edited[m_shown], Clock::today());
}

QList<Schedule> SchedulesDialog::edited()
{
    keepShown();
    return m_edited;
}

bool SchedulesDialog::save()
{
    keepShown();
    QStringList names;
    for (int i = 0; i < m_edited.size(); ++i) {
        const Schedule& s = m_edited[i];
        QStringList problems;
        // What cannot be read in the schedule shown is in its controls; the others were checked
        // when they were left.
        if (i == m_shown) {
            ScheduleRules::rulesFromLines(m_rules->toPlainText(), &problems);
            ScheduleRules::datesFromLines(m_leftOut->toPlainText(), &problems);
        }
        QString said;
        if (s.name.isEmpty())
            said = tr("A schedule has no name.");
        else if (names.contains(s.name, Qt::CaseInsensitive))
            said = tr("Two schedules are named \"%1\".").arg(s.name);
        else if (s.list.isEmpty())
            said = tr("The schedule \"%1\" runs no list.").arg(s.name);
        else if (s.rules.isEmpty())
            said = tr("The schedule \"%1\" has no hours.").arg(s.name);
        else if (!problems.isEmpty())
            said = tr("The schedule \"%1\": %2").arg(s.name, problems.first());
        if (!said.isEmpty()) {
            m_schedules->setCurrentRow(i);
            DialogService::message(said);
            return false;
        }
        names << s.name;
    }
    const RunError error = SchedulesFile::write(SchedulesFile::path(), m_edited);
    if (error != RunError::None) {
        DialogService::message(tr("The schedules could not be kept in %1: %2")
                                   .arg(QString::fromLatin1(SchedulesFile::kFileName), RunError(error).text()));
        return false;
    }
    if (m_scheduler)
        m_scheduler->setSchedules(m_edited);
    return true;
}

void SchedulesDialog::okClicked()
{
    if (save())
        close();
}
