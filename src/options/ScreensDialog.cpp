#include "ScreensDialog.h"

#include "core/DialogService.h"
#include "core/RunError.h"
#include "core/WebAddress.h"
#include "screens/ScreenPlacer.h"
#include "settings/ScreensFile.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QString named(const char* name, int slot)
{
    return QStringLiteral("%1%2").arg(QLatin1String(name)).arg(slot);
}

} // namespace

ScreensDialog::ScreensDialog(QWidget* owner, ScreenPlacer* placer) : QWidget(owner, Qt::Dialog), m_placer(placer)
{
    setObjectName(QStringLiteral("ScreensDialog"));
    setWindowTitle(tr("Screens"));

    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("MonitorsList"));
    m_list->setAccessibleName(tr("Monitors"));
    m_list->setRootIsDecorated(false);
    m_list->setHeaderLabels({tr("Monitor"), tr("Where it stands"), QString()});
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->setMaximumHeight(110);

    m_waylandNote = new QLabel(tr("Under Wayland the desktop decides where windows go: a window full screen on its "
                                  "monitor works, a rectangle has no effect."),
                               this);
    m_waylandNote->setObjectName(QStringLiteral("WaylandNote"));
    m_waylandNote->setWordWrap(true);
    m_waylandNote->setVisible(QGuiApplication::platformName().startsWith(QLatin1String("wayland")));

    auto* grid = new QGridLayout;
    const QStringList heads = {tr("Window"), tr("Monitor"), tr("Place"), tr("Left"), tr("Top"), tr("Width"),
                               tr("Height"), tr("While the monitor is missing")};
    for (int c = 0; c < heads.size(); ++c)
        grid->addWidget(new QLabel(QStringLiteral("<b>%1</b>").arg(heads[c]), this), 0, c);
    for (int slot = 1; slot <= 8; ++slot) {
        Row& row = m_rows[size_t(slot - 1)];
        auto* label = new QLabel(tr("Window %1").arg(slot), this);
        grid->addWidget(label, slot, 0);
        row.monitor = new QComboBox(this);
        row.monitor->setObjectName(named("MonitorCmb", slot));
        row.monitor->setAccessibleName(tr("Monitor of window %1").arg(slot));
        row.monitor->setToolTip(tr("The monitor window %1 stands on; it is found again on another connector").arg(slot));
        grid->addWidget(row.monitor, slot, 1);
        row.mode = new QComboBox(this);
        row.mode->setObjectName(named("PlaceCmb", slot));
        row.mode->setAccessibleName(tr("Place of window %1").arg(slot));
        row.mode->addItems({tr("Full screen"), tr("Rectangle")});
        grid->addWidget(row.mode, slot, 2);
        const char* rectNames[4] = {"RectX", "RectY", "RectW", "RectH"};
        for (int i = 0; i < 4; ++i) {
            auto* spin = new QSpinBox(this);
            spin->setObjectName(named(rectNames[i], slot));
            spin->setAccessibleName(tr("%1 of window %2 on its monitor").arg(heads[3 + i]).arg(slot));
            spin->setRange(i < 2 ? 0 : 1, 16384);
            spin->setSuffix(tr(" px"));
            row.rect[size_t(i)] = spin;
            grid->addWidget(spin, slot, 3 + i);
        }
        row.missing = new QComboBox(this);
        row.missing->setObjectName(named("MissingCmb", slot));
        row.missing->setAccessibleName(tr("Window %1 while its monitor is missing").arg(slot));
        row.missing->addItems({tr("Wait on the primary monitor"), tr("Stay hidden")});
        grid->addWidget(row.missing, slot, 7);
        label->setBuddy(row.monitor);
        connect(row.monitor, &QComboBox::currentIndexChanged, this, [this, slot] { showRowState(slot); });
        connect(row.mode, &QComboBox::currentIndexChanged, this, [this, slot] { showRowState(slot); });
    }

    auto* idleGrid = new QGridLayout;
    idleGrid->addWidget(new QLabel(QStringLiteral("<b>%1</b>").arg(tr("Window")), this), 0, 0);
    idleGrid->addWidget(new QLabel(QStringLiteral("<b>%1</b>").arg(tr("With no schedule running in it")), this), 0, 1);
    idleGrid->addWidget(new QLabel(QStringLiteral("<b>%1</b>").arg(tr("Page")), this), 0, 2);
    for (int slot = 1; slot <= 8; ++slot) {
        Row& row = m_rows[size_t(slot - 1)];
        auto* label = new QLabel(tr("Window %1").arg(slot), this);
        idleGrid->addWidget(label, slot, 0);
        row.idle = new QComboBox(this);
        row.idle->setObjectName(named("IdleCmb", slot));
        row.idle->setAccessibleName(tr("Window %1 with no schedule running in it").arg(slot));
        row.idle->setToolTip(tr("What window %1 shows when the rotation scheduled in it ends").arg(slot));
        row.idle->addItems({tr("Leave the desktop be (the screen may sleep)"), tr("Black"), tr("A page")});
        idleGrid->addWidget(row.idle, slot, 1);
        row.idlePage = new QLineEdit(this);
        row.idlePage->setObjectName(named("IdlePage", slot));
        row.idlePage->setAccessibleName(tr("Page of window %1 with no schedule running in it").arg(slot));
        row.idlePage->setPlaceholderText(QStringLiteral("https://"));
        idleGrid->addWidget(row.idlePage, slot, 2);
        label->setBuddy(row.idle);
        connect(row.idle, &QComboBox::currentIndexChanged, this, [this, slot] { showRowState(slot); });
    }
    idleGrid->setColumnStretch(2, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    connect(buttons, &QDialogButtonBox::accepted, this, &ScreensDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("The monitors as the system has them now:"), this));
    layout->addWidget(m_list);
    layout->addWidget(m_waylandNote);
    layout->addLayout(grid);
    layout->addSpacing(8);
    layout->addLayout(idleGrid);
    layout->addWidget(buttons);
    fill();
}

void ScreensDialog::fill()
{
    m_monitors = m_placer ? m_placer->monitors() : ScreenPlacer::systemMonitors();
    const QList<SlotPlace> places = m_placer ? m_placer->places() : ScreensFile::read(ScreensFile::path());
    m_list->clear();
    m_choices.clear();
    for (const Monitor& m : m_monitors) {
        const QRect& g = m.geometry;
        auto* item = new QTreeWidgetItem(m_list, {m.displayName(),
                                                  tr("%1 x %2 at %3, %4").arg(g.width()).arg(g.height()).arg(g.x()).arg(g.y()),
                                                  m.primary ? tr("primary") : QString()});
        Q_UNUSED(item)
        m_choices << MonitorId::of(m);
    }
    // Monitors that windows are fixed to and that are missing now.
    for (const SlotPlace& place : places)
        if (!place.monitor.isEmpty() && !ScreenPlaces::find(place.monitor, m_monitors) && !m_choices.contains(place.monitor)) {
            m_choices << place.monitor;
            const Monitor gone{place.monitor.name, place.monitor.manufacturer, place.monitor.model, place.monitor.serial, {}, false};
            auto* item = new QTreeWidgetItem(m_list, {gone.displayName(), tr("missing now"), QString()});
            item->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
        }
    for (int slot = 1; slot <= 8; ++slot) {
        Row& row = m_rows[size_t(slot - 1)];
        row.monitor->clear();
        row.monitor->addItem(tr("Not fixed"));
        for (int i = 0; i < m_choices.size(); ++i) {
            const MonitorId& id = m_choices[i];
            const Monitor shown{id.name, id.manufacturer, id.model, id.serial, {}, false};
            row.monitor->addItem(i < m_monitors.size() ? shown.displayName() : tr("%1 (missing now)").arg(shown.displayName()));
        }
        SlotPlace place;
        for (const SlotPlace& p : places)
            if (p.slot == slot)
                place = p;
        int choice = 0;
        if (!place.monitor.isEmpty()) {
            const std::optional<int> found = ScreenPlaces::find(place.monitor, m_monitors);
            choice = 1 + (found ? *found : int(m_choices.indexOf(place.monitor)));
        }
        row.monitor->setCurrentIndex(choice);
        row.mode->setCurrentIndex(place.fullScreen || !place.rect.isValid() ? 0 : 1);
        const QRect r = place.rect.isValid() ? place.rect : QRect(0, 0, 1280, 720);
        row.rect[0]->setValue(r.x());
        row.rect[1]->setValue(r.y());
        row.rect[2]->setValue(r.width());
        row.rect[3]->setValue(r.height());
        row.missing->setCurrentIndex(place.missing == SlotPlace::Missing::StayHidden ? 1 : 0);
        row.idle->setCurrentIndex(int(place.idle.show));
        row.idlePage->setText(place.idle.page);
        showRowState(slot);
    }
}

void ScreensDialog::showRowState(int slot)
{
    Row& row = m_rows[size_t(slot - 1)];
    const bool fixed = row.monitor->currentIndex() > 0;
    row.mode->setEnabled(fixed);
    row.missing->setEnabled(fixed);
    for (QSpinBox* spin : row.rect)
        spin->setEnabled(fixed && row.mode->currentIndex() == 1);
    row.idlePage->setEnabled(row.idle->currentIndex() == int(SlotIdle::Show::Page));
}

QList<SlotPlace> ScreensDialog::edited() const
{
    QList<SlotPlace> places;
    for (int slot = 1; slot <= 8; ++slot) {
        const Row& row = m_rows[size_t(slot - 1)];
        const int choice = row.monitor->currentIndex() - 1;
        SlotPlace place;
        place.slot = slot;
        place.idle.show = SlotIdle::Show(row.idle->currentIndex());
        if (place.idle.show == SlotIdle::Show::Page)
            place.idle.page = row.idlePage->text().trimmed();
        if (choice < 0 || choice >= m_choices.size()) {
            if (place.idle.show != SlotIdle::Show::Desktop)
                places << place; // not fixed to a monitor, but with its idle time
            continue;
        }
        place.monitor = m_choices[choice];
        place.fullScreen = row.mode->currentIndex() == 0;
        if (!place.fullScreen)
            place.rect = QRect(row.rect[0]->value(), row.rect[1]->value(), row.rect[2]->value(), row.rect[3]->value());
        place.missing = row.missing->currentIndex() == 1 ? SlotPlace::Missing::StayHidden : SlotPlace::Missing::WaitOnPrimary;
        places << place;
    }
    return places;
}

bool ScreensDialog::save()
{
    const QList<SlotPlace> places = edited();
    for (const SlotPlace& place : places)
        if (place.idle.show == SlotIdle::Show::Page && !WebAddress::fromOutside(place.idle.page)) {
            m_rows[size_t(place.slot - 1)].idlePage->setFocus();
            DialogService::message(place.idle.page.isEmpty()
                                       ? tr("Window %1 has no page to show with no schedule running in it.").arg(place.slot)
                                       : tr("Window %1: \"%2\" is not an http or https address.").arg(place.slot).arg(place.idle.page));
            return false;
        }
    const RunError error = ScreensFile::write(ScreensFile::path(), places);
    if (error != RunError::None) {
        DialogService::message(tr("The screens could not be kept in %1: %2")
                                   .arg(QString::fromLatin1(ScreensFile::kFileName), RunError(error).text()));
        return false;
    }
    if (m_placer)
        m_placer->setPlaces(places);
    return true;
}

void ScreensDialog::okClicked()
{
    if (save())
        close();
}
