#include "WindowStates.h"

#include "widgets/GradientButton.h"

#include <QApplication>
#include <QLabel>
#include <QStyle>

namespace {
constexpr int kBadgeSize = 14;

QIcon iconOf(PageRecovery::State state)
{
    QStyle* style = QApplication::style();
    switch (state) {
    case PageRecovery::State::Loading:
    case PageRecovery::State::CrashedReloading:
        return style->standardIcon(QStyle::SP_BrowserReload);
    case PageRecovery::State::Shown:
        return style->standardIcon(QStyle::SP_DialogApplyButton);
    case PageRecovery::State::Retrying:
    case PageRecovery::State::Failed:
        return style->standardIcon(QStyle::SP_MessageBoxWarning);
    case PageRecovery::State::GivenUp:
        return style->standardIcon(QStyle::SP_MessageBoxCritical);
    case PageRecovery::State::Idle:
        break;
    }
    return QIcon();
}
} // namespace

WindowStates::WindowStates(const std::array<GradientButton*, 8>& rows, QObject* parent)
    : QObject(parent), m_rows(rows)
{
    for (int slot = 1; slot <= int(m_badges.size()); ++slot) {
        GradientButton* row = m_rows[size_t(slot - 1)];
        auto* badge = new QLabel(row);
        badge->setObjectName(QStringLiteral("RowState_%1").arg(slot - 1));
        badge->setFixedSize(kBadgeSize, kBadgeSize);
        badge->move(3, 3);
        badge->hide();
        badge->setAccessibleName(tr("Window %1: no page state yet").arg(slot));
        m_badges[size_t(slot - 1)] = badge;
        auto* paused = new QLabel(QStringLiteral("paused"), row);
        paused->setObjectName(QStringLiteral("RowPaused_%1").arg(slot - 1));
        // In the colours of a tool tip, readable over any colour the rows are given.
        paused->setAutoFillBackground(true);
        paused->setBackgroundRole(QPalette::ToolTipBase);
        paused->setForegroundRole(QPalette::ToolTipText);
        paused->setContentsMargins(3, 0, 3, 0);
        paused->hide();
        m_paused[size_t(slot - 1)] = paused;
    }
}

QLabel* WindowStates::pausedLabel(int slot) const
{
    return slot >= 1 && slot <= int(m_paused.size()) ? m_paused[size_t(slot - 1)] : nullptr;
}

void WindowStates::showPaused(int slot, bool paused, bool byPerson)
{
    QLabel* label = pausedLabel(slot);
    if (!label)
        return;
    const QString tip = byPerson ? QStringLiteral("The list running here is paused while someone uses this window")
                                 : QStringLiteral("The list running here is paused: Resume, or Ctrl+Shift+Space in "
                                                  "the window, goes on");
    label->setToolTip(tip);
    label->setAccessibleName(tip);
    if (paused) {
        GradientButton* row = m_rows[size_t(slot - 1)];
        label->adjustSize();
        label->move(std::max(0, row->width() - label->width() - 3), std::max(0, (row->height() - label->height()) / 2));
        label->raise();
    }
    label->setVisible(paused);
}

QLabel* WindowStates::badge(int slot) const
{
    return slot >= 1 && slot <= int(m_badges.size()) ? m_badges[size_t(slot - 1)] : nullptr;
}

void WindowStates::show(int slot, PageRecovery::State state, const QString& toolTip)
{
    QLabel* label = badge(slot);
    if (!label)
        return;
    GradientButton* row = m_rows[size_t(slot - 1)];
    const bool visible = state != PageRecovery::State::Idle;
    label->setPixmap(iconOf(state).pixmap(kBadgeSize, kBadgeSize));
    label->setToolTip(toolTip);
    label->setAccessibleName(toolTip.isEmpty() ? tr("Window %1: no page state yet").arg(slot) : toolTip);
    label->move(3, std::max(0, (row->height() - kBadgeSize) / 2));
    label->setVisible(visible);
    // The caption keeps clear of the picture.
    row->setLeftInset(visible ? kBadgeSize + 4 : 0);
}
