#pragma once

#include "LocalHttpServer.h"
#include "TestSupport.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserProfile.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "widgets/GradientButton.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

// The ground of the tests that drive the real browser engine: one profile for the whole test
// program, a small HTTP server on 127.0.0.1, a folder of page files, and a fresh main window per
// test. A test class derives from it and calls startEngine() from initTestCase(), startMain() from
// init() and stopMain() from cleanup().
class RealBrowserTest : public QObject
{
protected:
    static constexpr int kLoadTimeoutMs = 30000;

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    LocalHttpServer m_server;
    QTemporaryDir m_pages;
    QTemporaryDir m_profile;

    bool startEngine()
    {
        BrowserProfile::setStorageFolder(m_profile.path());
        BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });
        return m_server.start();
    }
    void startMain()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        DialogService::clearShown();
    }
    void stopMain()
    {
        if (m_main)
            m_main->Form_Unload();
        m_main.reset();
        QTest::qWait(50); // let the engine take the closed windows down
        m_app.reset();
    }

    QString pageFile(const QString& name, const QByteArray& html)
    {
        const QString path = m_pages.filePath(name);
        writeAll(path, html);
        return QUrl::fromLocalFile(path).toString();
    }
    WebBrowserWindow* window(int slot) { return qobject_cast<WebBrowserWindow*>(m_main->webForm()->ie(slot)); }
    GradientButton* row(int slot) { return m_main->surf()->Button(slot - 1); }
    void open(const QString& url)
    {
        g.CurrentUrl = url;
        m_main->NewBtnAction(true);
    }
    // Opens `url` in a new window and waits for `documents` completed documents (at most the
    // load time-out); their addresses, in order, are returned.
    QStringList openAndWait(const QString& url, int documents = 1)
    {
        QStringList completed;
        auto connection = connect(m_main->webForm(), &WebForm1::documentCompleted, this,
                                  [&] { completed << g.CurrentUrl; });
        open(url);
        waitFor([&] { return completed.size() >= documents; }, kLoadTimeoutMs);
        disconnect(connection);
        return completed;
    }
};
