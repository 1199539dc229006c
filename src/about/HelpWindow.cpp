#include "HelpWindow.h"

#include "core/Globals.h"
#include "widgets/WindowPlacement.h"

#include <QFileInfo>

HelpWindow::HelpWindow(QWidget* owner) : QTextBrowser(owner)
{
    setWindowFlag(Qt::Window);
    setObjectName(QStringLiteral("HelpWindow"));
    setWindowTitle(QStringLiteral("Vantrel Help"));
    setOpenExternalLinks(true);
    resize(640, 720);
}

void HelpWindow::showHelp()
{
    const QString local = appFilePath(QStringLiteral("Help/Vantrel.html"));
    m_source = QFileInfo::exists(local) ? QUrl::fromLocalFile(local)
                                        : QUrl(QStringLiteral("qrc:/help/vantrel.html"));
    setSource(m_source);
    reload();
    keepAboveOwner(this, parentWidget());
    keepOnScreen(this);
    show();
    raise();
    activateWindow();
}
