#include "BrowserPage.h"

#include "BrowserProfile.h"

BrowserPage::BrowserPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {}

bool BrowserPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool isMainFrame)
{
    emit navigationRequested(url, isMainFrame);
    return true; // a navigation is never refused
}

void BrowserPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& message, int,
                                           const QString&)
{
    if (const auto report = FrameReport::parse(message, BrowserProfile::reportToken()))
        emit frameReported(*report);
    // The pages' own console messages are of no interest to the user of this program.
}
