#pragma once

#include <QTextBrowser>

// The help: an HTML page shipped inside the program, or the file Help/Vantrel.html in the program
// folder when there is one, shown in a window of the program's own.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget* owner);

    // Loads the help (again, so that a changed file shows) and brings the window forward.
    void showHelp();
    // Where the help comes from now.
    QUrl source() const { return m_source; }

private:
    QUrl m_source;
};
