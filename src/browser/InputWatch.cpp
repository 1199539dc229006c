#include "InputWatch.h"

#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

InputWatch::InputWatch(QWidget* top) : QObject(top)
{
    watch(top);
}

void InputWatch::watch(QObject* object)
{
    if (!object->isWidgetType())
        return;
    object->installEventFilter(this);
    for (QObject* child : object->children())
        watch(child);
}

std::optional<RunKey> InputWatch::runKeyOf(int key, Qt::KeyboardModifiers modifiers)
{
    const Qt::KeyboardModifiers wanted = Qt::ControlModifier | Qt::ShiftModifier;
    if ((modifiers & ~Qt::KeypadModifier) != wanted)
        return std::nullopt;
    switch (key) {
    case Qt::Key_Space:
        return RunKey::PauseOrResume;
    case Qt::Key_Right:
        return RunKey::Next;
    case Qt::Key_Left:
        return RunKey::Previous;
    default:
        return std::nullopt;
    }
}

bool InputWatch::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ChildAdded:
        // The engine makes the widgets that take a page's input as the page comes.
        watch(static_cast<QChildEvent*>(event)->child());
        break;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (takeRunKeys) {
            if (const auto runKey = runKeyOf(key->key(), key->modifiers())) {
                // Claimed before any shortcut or page, and acted on at the press itself.
                event->accept();
                if (event->type() == QEvent::KeyPress && !key->isAutoRepeat())
                    emit runKeyPressed(*runKey);
                return true;
            }
        }
        const bool modifierAlone = key->key() == Qt::Key_Control || key->key() == Qt::Key_Shift ||
                                   key->key() == Qt::Key_Alt || key->key() == Qt::Key_Meta ||
                                   key->key() == Qt::Key_AltGr;
        if (event->type() == QEvent::KeyPress && !modifierAlone)
            emit acted();
        break;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        emit acted();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
