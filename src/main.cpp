#include "browser/BrowserEngine.h"
#include "mainwindow/EntryProcedure.h"
#include "mainwindow/Vantrel1.h"
#include "core/PlatformChoice.h"
#include "widgets/MessageBoxBackend.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char* argv[])
{
    PlatformChoice::apply();
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.vantrel.Vantrel"));
    QIcon icon;
    for (int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/vantrel-%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
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
