#include "MoreOptions.h"

#include "desktop/Autostart.h"
#include "watch/EventLog.h"
#include "settings/VantrelConf.h"
#include "widgets/WindowColors.h"
#include "core/DialogService.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QUrl>
#include <QVBoxLayout>

namespace {
// "TimedBrowsing/KeepScreenAwake" names its control "KeepScreenAwake".
QString controlName(const char* key)
{
    return QString::fromLatin1(key).section(u'/', -1);
}
} // namespace

MoreOptions::MoreOptions(QWidget* owner) : QWidget(owner, Qt::Dialog)
{
    setObjectName(QStringLiteral("MoreOptions"));
    setWindowTitle(QStringLiteral("More Options"));
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    for (const VantrelConf::Setting& setting : VantrelConf::all()) {
        Row row{setting.key};
        if (setting.flag) {
            row.box = new QCheckBox(setting.label, this);
            row.box->setObjectName(controlName(setting.key));
            row.box->setToolTip(setting.toolTip);
            form->addRow(row.box);
            if (qstrcmp(setting.key, VantrelConf::kSyncWithFile) == 0)
                addSyncFileRow(form, row.box);
        } else {
            row.number = new QSpinBox(this);
            row.number->setObjectName(controlName(setting.key));
            row.number->setRange(setting.minimum, setting.maximum);
            row.number->setSpecialValueText(setting.zeroText);
            row.number->setSuffix(setting.unit);
            row.number->setToolTip(setting.toolTip);
            row.number->setAccessibleName(setting.label);
            form->addRow(setting.label, row.number);
        }
        m_rows.push_back(row);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    QPushButton* log = buttons->addButton(QStringLiteral("Open the Log"), QDialogButtonBox::ActionRole);
    log->setObjectName(QStringLiteral("OpenLogBtn"));
    log->setToolTip(QStringLiteral("Show Vantrel.log: what happened while nobody watched"));
    connect(buttons, &QDialogButtonBox::accepted, this, &MoreOptions::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    connect(log, &QPushButton::clicked, this, &MoreOptions::openLog);
    QPushButton* schedules = buttons->addButton(tr("Schedules..."), QDialogButtonBox::ActionRole);
    schedules->setObjectName(QStringLiteral("SchedulesBtn"));
    schedules->setToolTip(tr("Favourite lists that run by themselves at their hours: days, times, holidays"));
    connect(schedules, &QPushButton::clicked, this, &MoreOptions::schedulesRequested);
    QPushButton* screens = buttons->addButton(tr("Screens..."), QDialogButtonBox::ActionRole);
    screens->setObjectName(QStringLiteral("ScreensBtn"));
    screens->setToolTip(tr("Each browser window on a monitor of its own, full screen or at a rectangle"));
    connect(screens, &QPushButton::clicked, this, &MoreOptions::screensRequested);
    QPushButton* mqtt = buttons->addButton(tr("MQTT..."), QDialogButtonBox::ActionRole);
    mqtt->setObjectName(QStringLiteral("MqttBtn"));
    mqtt->setToolTip(tr("Run Vantrel from an MQTT broker and Home Assistant"));
    connect(mqtt, &QPushButton::clicked, this, &MoreOptions::mqttRequested);
    QPushButton* remote = buttons->addButton(tr("Remote Page..."), QDialogButtonBox::ActionRole);
    remote->setObjectName(QStringLiteral("RemotePageBtn"));
    remote->setToolTip(tr("Control Vantrel from a phone's browser"));
    connect(remote, &QPushButton::clicked, this, &MoreOptions::remotePageRequested);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    showSettings();
}

void MoreOptions::addSyncFileRow(QFormLayout* form, QCheckBox* on)
{
    m_syncFile = new QLineEdit(this);
    m_syncFile->setObjectName(QStringLiteral("SyncFileEdit"));
    m_syncFile->setPlaceholderText(tr("an .xbel file in a shared folder"));
    m_syncFile->setAccessibleName(tr("Bookmarks file"));
    m_syncFile->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    auto* choose = new QPushButton(tr("Choose..."), this);
    choose->setObjectName(QStringLiteral("SyncFileBtn"));
    choose->setToolTip(tr("Pick the bookmarks file, or name a new one"));
    connect(choose, &QPushButton::clicked, this, &MoreOptions::chooseSyncFile);
    auto* line = new QHBoxLayout;
    line->addWidget(m_syncFile, 1);
    line->addWidget(choose);
    form->addRow(tr("Bookmarks file:"), line);
    const auto follow = [this, choose](bool checked) {
        m_syncFile->setEnabled(checked);
        choose->setEnabled(checked);
    };
    connect(on, &QCheckBox::toggled, this, follow);
    follow(on->isChecked());
}

void MoreOptions::chooseSyncFile()
{
    const QString start = m_syncFile->text().isEmpty() ? QDir::homePath() + QStringLiteral("/bookmarks.xbel")
                                                       : m_syncFile->text();
    const auto chosen = DialogService::shareFile(tr("Bookmarks File to Keep in Step"), start,
                                                 {tr("XBEL bookmarks (*.xbel)"), tr("All files (*)")});
    if (chosen)
        m_syncFile->setText(chosen->path);
}

QWidget* MoreOptions::control(const char* key) const
{
    for (const Row& row : m_rows)
        if (qstrcmp(row.key, key) == 0)
            return row.box ? static_cast<QWidget*>(row.box) : row.number;
    return nullptr;
}

void MoreOptions::showSettings()
{
    for (const Row& row : m_rows) {
        if (qstrcmp(row.key, VantrelConf::kStartAtLogin) == 0)
            row.box->setChecked(Autostart::isEnabled()); // the desktop's own entry says it
        else if (row.box)
            row.box->setChecked(VantrelConf::flag(row.key));
        else
            row.number->setValue(VantrelConf::value(row.key));
    }
    m_syncFile->setText(VantrelConf::text(VantrelConf::kSyncFile));
}

bool MoreOptions::storeSettings()
{
    bool stored = true;
    for (const Row& row : m_rows)
        stored = VantrelConf::setValue(row.key, row.box ? int(row.box->isChecked()) : row.number->value()) && stored;
    return VantrelConf::setText(VantrelConf::kSyncFile, m_syncFile->text().trimmed()) && stored;
}

bool MoreOptions::applyStartAtLogin(QString* error)
{
    const bool wanted = VantrelConf::flag(VantrelConf::kStartAtLogin);
    if (wanted == Autostart::isEnabled())
        return true;
    return Autostart::setEnabled(wanted, Autostart::command(), error);
}

void MoreOptions::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyDialogColors(this);
    QWidget::changeEvent(event);
}

void MoreOptions::okClicked()
{
    const auto* sync = static_cast<QCheckBox*>(control(VantrelConf::kSyncWithFile));
    if (sync->isChecked() && m_syncFile->text().trimmed().isEmpty()) {
        DialogService::message(tr("Choose the bookmarks file to keep your Favorites in step with."));
        m_syncFile->setFocus();
        return;
    }
    if (!storeSettings()) {
        DialogService::message(QStringLiteral("The settings could not be saved in ") + VantrelConf::path());
        return;
    }
    QString error;
    if (!applyStartAtLogin(&error)) {
        DialogService::message(QStringLiteral("Vantrel could not be set to start at login: ") + error);
        showSettings();
        return;
    }
    emit applied();
    close();
}

void MoreOptions::openLog()
{
    const QString log = EventLog::path();
    if (!QFile::exists(log)) {
        DialogService::message(QStringLiteral("Nothing has been logged yet: ") + log);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(log)))
        DialogService::message(QStringLiteral("No program could be started to show the log. It is in ") + log);
}
