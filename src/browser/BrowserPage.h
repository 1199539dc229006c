#pragma once

#include "FrameReport.h"

#include <QWebEnginePage>

// A page of the program's browser windows. It accepts every navigation and reports it, reads the
// frame reports out of the console, and hands the engine's requests (new windows, certificate
// errors) on as signals; the window decides what to do with them.
class BrowserPage : public QWebEnginePage
{
    Q_OBJECT

public:
    BrowserPage(QWebEngineProfile* profile, QObject* parent);

signals:
    void navigationRequested(const QUrl& url, bool mainFrame);
    void frameReported(const FrameReport::Report& report);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int lineNumber,
                                  const QString& sourceID) override;
};
