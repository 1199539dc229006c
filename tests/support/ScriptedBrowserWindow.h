#pragma once

#include "browser/BrowserWindow.h"

#include <QStringList>

#include <optional>

class WebForm1;

// A stand-in for a browser window that does what it is told and raises the events a test asks
// for, in the order a real window raises them.
class ScriptedBrowserWindow : public BrowserWindow
{
    Q_OBJECT

public:
    using BrowserWindow::BrowserWindow;

    void setVisible(bool visible) override;
    bool isVisible() const override { return m_visible; }
    void setTheaterMode(bool on) override;
    bool theaterMode() const override { return m_theater; }
    void navigate(const QString& address) override { navigations.append(address); }
    void navigateWhenReady(const QString& address, int timeoutMs) override
    {
        navigations.append(address);
        calls.append(QStringLiteral("when ready %1 ms").arg(timeoutMs));
    }
    QString locationName() const override { return title.isEmpty() ? url : title; }
    void quit() override;
    void retry() override { calls.append(QStringLiteral("retry")); }
    void stopLoading() override { calls.append(QStringLiteral("stop")); }
    qint64 pageProcessId() const override { return pagePid; }
    qint64 pagePid = 0;
    std::optional<WindowPlace> placeWhenFirstShown; // where it stood when first made visible
    void setPageLook(const PageSettings& look, double shownSeconds) override
    {
        this->look = look;
        lookSeconds = shownSeconds;
    }
    void shownAgain() override { calls.append(QStringLiteral("shown again")); }
    void setRunKeys(bool on) override { runKeys = on; }
    void loadAhead(const QString& address, const PageSettings& look) override
    {
        loadedAhead.append(address);
        lookAhead = look;
    }

    // A page load: navigation begins, the document is created, the title arrives (when given),
    // each sub-frame completes and then the page itself.
    void load(const QString& pageUrl, const QString& pageTitle, const QStringList& frameUrls = {});
    // The user closes the window.
    void closeByHand() { quit(); }

    // Makes `pool` build scripted windows, each appended to `created`.
    static void installOn(WebForm1* pool, QList<ScriptedBrowserWindow*>* created);

    QStringList navigations;
    QStringList calls; // "visible", "hidden", "theater on", "theater off", "quit" in order
    QString url;
    QString title;
    PageSettings look; // the look of the pages it loads now
    double lookSeconds = 0;
    bool runKeys = false;
    QStringList loadedAhead; // the pages asked to load ahead of a step, in order
    PageSettings lookAhead;

private:
    bool m_visible = false;
    bool m_theater = false;
    bool m_quit = false;
};
