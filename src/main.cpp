#include "widgets/MessageBoxBackend.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantrel"));
    MessageBoxBackend dialogs;
    DialogService::setBackend(&dialogs);
    return 0;
}
