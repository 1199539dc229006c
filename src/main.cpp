#include "browser/BrowserEngine.h"
#include "browser/EntryProcedure.h"
#include "browser/Vantrel1.h"
#include "widgets/MessageBoxBackend.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantrel"));
    QApplication::setDesktopFileName(QStringLiteral("vantrel"));
    // The main window's unload ends the program, not the last browser window closing.
    QApplication::setQuitOnLastWindowClosed(false);
    MessageBoxBackend dialogs;
    DialogService::setBackend(&dialogs);

    std::unique_ptr<Vantrel1> window = RunEntryProcedure();
    QObject::connect(window.get(), &Vantrel1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    const int result = app.exec();
    DialogService::setBackend(nullptr);
    return result;
}
