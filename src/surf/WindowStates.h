#pragma once

#include "watch/PageRecovery.h"

#include <QObject>

#include <array>

class GradientButton;
class QLabel;

// The small picture beside each Surf row's caption that tells how its window's page is doing:
// loading, shown, failed and trying again, crashed and reloading, given up. Its own tool tip says
// it in words; the row's caption, tag and tool tip stay as they are.
class WindowStates : public QObject
{
    Q_OBJECT

public:
    // `rows`: the eight row buttons, slot 1 first; the pictures sit on them.
    WindowStates(const std::array<GradientButton*, 8>& rows, QObject* parent);

    void show(int slot, PageRecovery::State state, const QString& toolTip);
    QLabel* badge(int slot) const;
    // "paused" at the right end of the row of a window whose running list is paused; `byPerson`
    // when it holds because someone uses the window.
    void showPaused(int slot, bool paused, bool byPerson);
    QLabel* pausedLabel(int slot) const;

private:
    std::array<GradientButton*, 8> m_rows;
    std::array<QLabel*, 8> m_badges{};
    std::array<QLabel*, 8> m_paused{};
};
