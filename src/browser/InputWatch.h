#pragma once

#include "BrowserWindow.h"

#include <QObject>

class QWidget;

// Watches a browser window's widgets, the page views made later included, for what a person does
// there: a click, a scroll, a key or a touch (a pointer moved alone does not count, it is easily
// nudged by accident). While `takeRunKeys` is on, the keys that steer a running list
// (Ctrl+Shift+Space, Ctrl+Shift+Right, Ctrl+Shift+Left) are taken before the page sees them.
class InputWatch : public QObject
{
    Q_OBJECT

public:
    explicit InputWatch(QWidget* top);

    bool takeRunKeys = false;

    // The run key a key press stands for, if it is one.
    static std::optional<RunKey> runKeyOf(int key, Qt::KeyboardModifiers modifiers);

signals:
    void acted();
    void runKeyPressed(RunKey key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QObject* object);
};
