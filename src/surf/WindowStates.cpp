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
        m_badges[size_t(slot - 1)] = badge;
    }
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
    label->setAccessibleName(toolTip);
    label->move(3, std::max(0, (row->height() - kBadgeSize) / 2));
    label->setVisible(visible);
    // The caption keeps clear of the picture.
    row->setLeftInset(visible ? kBadgeSize + 4 : 0);
}
