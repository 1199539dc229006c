#pragma once

#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsMenu.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "mainwindow/Vantrel1.h"
#include "widgets/KeyedTree.h"

#include <QMenu>
#include <QTabWidget>
#include <QTest>

#include <memory>

// The main window shown on its Lists tab, started from a list file of the test's, with scripted
// browser windows and the recording dialog service. One for each test function.
class ListsTab
{
public:
    explicit ListsTab(const QByteArray& listFile)
    {
        DialogService::reset();
        writeAll(app.file("DefaultList.NLS"), listFile);
        LoadListFile(app.file("DefaultList.NLS"));
        main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(main->webForm(), &created);
        main->Form_Load();
        main->show();
        main->TabStrip1()->setCurrentIndex(2);
        exposed = QTest::qWaitForWindowExposed(main.get());
        DialogService::clearShown();
        globals().ListsChanged = false;
    }
    ~ListsTab()
    {
        main.reset();
        DialogService::reset();
    }

    ListsTree* lists() const { return main->listsPanel()->lists(); }
    ListsMenu* menu() const { return main->listsPanel()->menu(); }
    KeyedTree* tree() const { return main->listsPanel()->SSTree2(); }
    // The menu as the user opens it on `key` (none: on empty space) with the mouse.
    bool openMenuOn(const QString& key) const
    {
        rightClickTree(tree(), key);
        return QTest::qWaitFor([&] { return menu()->menu()->isVisible(); });
    }
    void choose(QAction* action) const { chooseFromMenu(menu()->menu(), action); }
    // Opens the menu on `key` and chooses `action` there; false when it is not there to choose.
    bool chooseOn(const QString& key, QAction* action) const
    {
        if (!openMenuOn(key) || !action->isEnabled())
            return false;
        choose(action);
        return true;
    }

    TempAppFolder app;
    bool exposed = false;
    std::unique_ptr<Vantrel1> main;
    QList<ScriptedBrowserWindow*> created;
};
