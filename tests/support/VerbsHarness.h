#pragma once

#include "ListRecords.h"
#include "ScriptedBrowserWindow.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QFile>
#include <QTemporaryDir>

#include <memory>

// The verbs on their own, with no window of the program: scripted browser windows, the recording
// dialog service, a manual clock and a program folder of their own. One for each test function.
class VerbsHarness
{
public:
    VerbsHarness()
    {
        resetGlobals();
        DialogService::reset();
        globals().AppPath = m_app.path();
        Clock::setInstance(&clock);
        verbs = std::make_unique<Verbs>();
        ScriptedBrowserWindow::installOn(verbs->pool(), &created);
    }
    ~VerbsHarness()
    {
        verbs.reset();
        Clock::setInstance(nullptr);
        DialogService::reset();
    }

    ScriptedBrowserWindow* window(int slot) const
    {
        return qobject_cast<ScriptedBrowserWindow*>(verbs->pool()->ie(slot));
    }
    // One tick of the program's timer, after the clock moved on.
    void tickAfter(double seconds)
    {
        clock.advanceSeconds(seconds);
        verbs->tick();
    }
    // The lists as the list file would give them: a record for each list, then its pages.
    void setLists(const QList<ListState>& lists) { loadLists(verbs->lists(), lists); }
    QString folder() const { return m_app.path(); }
    // What the log holds so far.
    QString log() const
    {
        QFile file(m_app.filePath(QStringLiteral("Vantrel.log")));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    ManualClock clock{QDateTime(QDate(2026, 5, 4), QTime(10, 0))};
    std::unique_ptr<Verbs> verbs;
    QList<ScriptedBrowserWindow*> created;

private:
    QTemporaryDir m_app;
};
