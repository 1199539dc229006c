#pragma once

#include <QWidget>

class GradientButton;
class QHBoxLayout;

// The page of a tab that shows the shared Favorites tree panel: its own content above the panel,
// its command buttons in a row below it. The panel itself lies over the middle of the page.
class SharedTreeTab : public QWidget
{
    Q_OBJECT

public:
    explicit SharedTreeTab(QWidget* parent = nullptr);

    void setUpper(QWidget* upper);
    void addCommand(GradientButton* command);
    // Fits the upper content and the command row around the tree panel, in pixels of the page.
    void fitAround(int upperHeight, int commandHeight);

private:
    QWidget* m_upper = nullptr;
    QWidget* m_commands;
    QHBoxLayout* m_commandLayout;
};
