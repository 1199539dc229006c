#include "ScriptedBrowserWindow.h"

#include "verbs/WebForm1.h"

void ScriptedBrowserWindow::setVisible(bool visible)
{
    m_visible = visible;
    if (visible && !placeWhenFirstShown)
        placeWhenFirstShown = place();
    calls.append(visible ? QStringLiteral("visible") : QStringLiteral("hidden"));
}

void ScriptedBrowserWindow::setTheaterMode(bool on)
{
    m_theater = on;
    calls.append(on ? QStringLiteral("theater on") : QStringLiteral("theater off"));
}

void ScriptedBrowserWindow::quit()
{
    if (m_quit)
        return;
    m_quit = true;
    m_visible = false;
    calls.append(QStringLiteral("quit"));
    emit quitted();
}

void ScriptedBrowserWindow::load(const QString& pageUrl, const QString& pageTitle,
                                 const QStringList& frameUrls)
{
    url = pageUrl;
    title.clear();
    emit beforeNavigate(pageUrl);
    for (const QString& frame : frameUrls)
        emit beforeNavigate(frame);
    emit navigateComplete(pageUrl);
    if (!pageTitle.isEmpty()) {
        title = pageTitle;
        emit titleChange(pageTitle);
    }
    for (const QString& frame : frameUrls) {
        emit navigateComplete(frame);
        emit documentComplete(frame);
    }
    emit documentComplete(pageUrl);
}

void ScriptedBrowserWindow::installOn(WebForm1* pool, QList<ScriptedBrowserWindow*>* created)
{
    pool->setWindowFactory([created](QObject* parent) {
        auto* window = new ScriptedBrowserWindow(parent);
        created->append(window);
        return window;
    });
}
