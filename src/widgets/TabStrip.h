#pragma once

#include <QTabWidget>

// The main window's tabs with their panels. The tabs share the bar's width evenly, so that all
// captions stay in view in the narrow window the program opens with, instead of scrolling away.
class TabStrip : public QTabWidget
{
    Q_OBJECT

public:
    explicit TabStrip(QWidget* parent = nullptr);

    // The tabs' background and caption colours (an invalid colour leaves the theme's), and whether
    // every caption is bold.
    void setTabColors(const QColor& back, const QColor& text, bool bold);
};
