#include "OtherWindowsRun.h"

#include "RunList1.h"
#include "core/DialogService.h"
#include "verbs/Verbs.h"
#include "widgets/WindowColors.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int kDefaultInterval = 2; // "2 minute", as the run dialog starts
}

OtherWindowsRun::OtherWindowsRun(const QString& list, Verbs* verbs, QWidget* owner)
    : QWidget(owner, Qt::Dialog), m_list(list), m_verbs(verbs)
{
    setObjectName(QStringLiteral("OtherWindowsRun"));
    setWindowTitle(QStringLiteral("Run in Other Windows"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);

    auto* title = new QLabel(QStringLiteral("Run \"%1\" beside the other runs, in windows of its own.").arg(list), this);
    title->setObjectName(QStringLiteral("OtherWindowsTitle"));
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);

    m_times = new QComboBox(this);
    m_times->setObjectName(QStringLiteral("IntervalCombo"));
    m_times->setToolTip(QStringLiteral("Select Time Interval between Web Pages"));
    for (const auto& [text, data] : RunList1::intervals())
        m_times->addItem(text, data * 10);
    m_times->setCurrentIndex(kDefaultInterval);
    m_multi = new QCheckBox(QStringLiteral("Use all of its windows, page after page"), this);
    m_multi->setObjectName(QStringLiteral("SeveralWindowsCheck"));
    m_multi->setToolTip(QStringLiteral("Each page in the next of the windows chosen; otherwise every page in the first"));
    m_multi->setChecked(true);
    m_loop = new QCheckBox(QStringLiteral("Run Continuous Loop"), this);
    m_loop->setObjectName(QStringLiteral("LoopCheck"));
    m_loop->setChecked(true);
    m_keep = new QCheckBox(QStringLiteral("Keep Pages Loaded"), this);
    m_keep->setObjectName(QStringLiteral("KeepPagesCheck"));
    m_keep->setToolTip(QStringLiteral("With a window for each page, each comes forward as it was instead of loading again"));

    auto* windows = new QGroupBox(QStringLiteral("Its windows"), this);
    windows->setObjectName(QStringLiteral("WindowsGroup"));
    auto* grid = new QGridLayout(windows);
    for (int slot = 1; slot <= int(m_windows.size()); ++slot) {
        auto* box = new QCheckBox(QStringLiteral("Window %1").arg(slot), windows);
        box->setObjectName(QStringLiteral("WindowCheck_%1").arg(slot));
        grid->addWidget(box, (slot - 1) / 4, (slot - 1) % 4);
        connect(box, &QCheckBox::toggled, this, &OtherWindowsRun::update);
        m_windows[size_t(slot - 1)] = box;
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Select Time Between Pages:"), m_times);
    form->addRow(m_multi);
    form->addRow(m_loop);
    form->addRow(m_keep);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* goButton = buttons->addButton(QStringLiteral("Go"), QDialogButtonBox::AcceptRole);
    goButton->setObjectName(QStringLiteral("GoBtn"));
    goButton->setToolTip(QStringLiteral("Start the list in the windows chosen"));
    m_go = goButton;
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("CancelBtn"));
    connect(goButton, &QPushButton::clicked, this, [this] {
        if (go())
            close();
    });
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addLayout(form);
    layout->addWidget(windows);
    layout->addWidget(buttons);
    showWindows();
    applyDialogColors(this);
}

void OtherWindowsRun::showWindows()
{
    // Windows no run owns can be chosen; the first free ones that show nothing are offered.
    const QSet<int> owned = m_verbs->slotsOfRuns();
    int offered = 0;
    for (int slot = 1; slot <= int(m_windows.size()); ++slot) {
        QCheckBox* box = m_windows[size_t(slot - 1)];
        const WindowState window = m_verbs->window(slot);
        const bool free = !owned.contains(slot);
        box->setEnabled(free);
        box->setToolTip(!free                  ? QStringLiteral("Another run shows its pages in this window")
                        : window.slot == 0     ? QStringLiteral("No window is open here yet")
                                               : QStringLiteral("Now: %1").arg(window.title));
        const bool offer = free && window.slot == 0 && offered < 1;
        box->setChecked(offer);
        offered += offer ? 1 : 0;
    }
    update();
}

void OtherWindowsRun::update()
{
    m_go->setEnabled(!chosenWindows().isEmpty());
}

QList<int> OtherWindowsRun::chosenWindows() const
{
    QList<int> chosen;
    for (int slot = 1; slot <= int(m_windows.size()); ++slot)
        if (m_windows[size_t(slot - 1)]->isEnabled() && m_windows[size_t(slot - 1)]->isChecked())
            chosen.append(slot);
    return chosen;
}

bool OtherWindowsRun::go()
{
    const RunChoice choice{m_list, m_times->currentData().toInt(), m_loop->isChecked(), m_multi->isChecked(),
                           m_keep->isChecked()};
    const VerbResult started = m_verbs->runInOtherWindows(choice, chosenWindows(), Caller::Person);
    if (!started.ok()) {
        DialogService::message(QStringLiteral("The list could not run in other windows: %1.").arg(started.reason()));
        showWindows();
        return false;
    }
    return true;
}

void OtherWindowsRun::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyDialogColors(this);
    QWidget::changeEvent(event);
}
