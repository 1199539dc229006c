#include "WindowPlacement.h"

#include <QApplication>

#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QWidget>

#include <algorithm>

void keepOnScreen(QWidget* window)
{
    QScreen* screen = window->screen();
    if (window->parentWidget())
        screen = window->parentWidget()->window()->screen();
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    // Before the desktop frames a window its frame is not known yet: the frame of its owner, or
    // of any shown window, stands in for it.
    QMargins frame(window->geometry().left() - window->frameGeometry().left(),
                   window->geometry().top() - window->frameGeometry().top(),
                   window->frameGeometry().right() - window->geometry().right(),
                   window->frameGeometry().bottom() - window->geometry().bottom());
    if (frame.isNull() && window->parentWidget()) {
        const QWidget* owner = window->parentWidget()->window();
        frame = QMargins(owner->geometry().left() - owner->frameGeometry().left(),
                         owner->geometry().top() - owner->frameGeometry().top(),
                         owner->frameGeometry().right() - owner->geometry().right(),
                         owner->frameGeometry().bottom() - owner->geometry().bottom());
    }
    // Nothing framed yet (a dialog opened while the program starts): room for a title bar all the
    // same, so that it does not end up above the screen's top.
    if (frame.isNull())
        frame = QMargins(0, window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window), 0, 0);
    const QRect outer = window->geometry().marginsAdded(frame);
    const int left = std::max(area.left(), std::min(outer.left(), area.right() + 1 - outer.width()));
    const int top = std::max(area.top(), std::min(outer.top(), area.bottom() + 1 - outer.height()));
    if (left != outer.left() || top != outer.top())
        window->move(window->pos() + QPoint(left - outer.left(), top - outer.top()));
}

void keepAboveOwner(QWidget* window, QWidget* owner)
{
    if (!owner)
        return;
    owner = owner->window();
    if (window->parentWidget() != owner)
        window->setParent(owner, window->windowFlags() | Qt::Window);
    const bool onTop = owner->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    if (window->windowFlags().testFlag(Qt::WindowStaysOnTopHint) != onTop)
        window->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
}

QWidget* programMainWindow()
{
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == QLatin1String("Vantrel1"))
            return window;
    return nullptr;
}
