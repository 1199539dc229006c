// The floor of the start-up benchmark: a bare Qt Widgets program that shows one window with one
// line of text and reports when it has been painted and the event loop is idle.
#include "IdleAfterPaint.h"

#include <QApplication>
#include <QLabel>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QLabel window(QStringLiteral("Vantrel"));
    window.resize(313, 540);
    new IdleAfterPaint(&window);
    window.show();
    return app.exec();
}
