#pragma once

#include "verbs/Caller.h"
#include "widgets/SharedTreeTab.h"

#include <QPointer>


class GradientButton;
class KeptPages;
class KeyedTree;
class ListRun;
class ListsMenu;
class ListsTree;
class QComboBox;
class QFrame;
class RunList1;
class RunWatch;
class FavoritesTree;
class SurfPanel;
class Verbs;

// The Lists tab: the lists tree SSTree2 above the shared Favorites tree panel, Save, Run and New
// List below it; and the timed run of a list with its dialog.
class ListsPanel : public SharedTreeTab
{
    Q_OBJECT

public:
    ListsPanel(QComboBox* listNames, Verbs* verbs, SurfPanel* rows, FavoritesTree* favorites);

    KeyedTree* SSTree2() const { return m_tree; }
    ListsTree* lists() const { return m_lists; }
    ListsMenu* menu() const { return m_menu; }
    // The timed run, as the verbs hold it.
    ListRun& run();
    RunWatch* runWatch() const;
    // "Keep Pages Loaded" for the run going on.
    KeptPages& keptPages();
    QFrame* Frame3() const { return m_frame3; }
    GradientButton* SaveListBtn() const { return m_saveListBtn; }
    GradientButton* RunListBtn() const { return m_runListBtn; }
    GradientButton* NewListBtn() const { return m_newListBtn; }
    // The run dialog, when it is loaded.
    RunList1* runDialog() const;

    // Collects the pages of the list `upperName` for the run; true when it has any.
    bool BuildRunList(const QString& upperName);
    // Stops a run in progress, then brings the run dialog forward (opening it when needed).
    void RunListBtn_Click();
    // Starts the run of a session that was going when the program ended, from its dialog with the
    // same choices, and sets it to go on at page `position`. False when the list or its interval
    // is no longer there.
    bool resumeRun(const QString& list, int interval, bool loop, bool severalWindows, bool keep, int position);
    // Whether the run dialog's "Keep Pages Loaded" is ticked.
    bool keepingPages() const;
    // Closes the run dialog (at shutdown).
    void unloadRunDialog();

signals:
    // The run dialog's Help button.
    void helpRequested();

private:
    void focusRunDialog();
    void runCompleted(Caller startedBy);
    void runListTooLong(Caller startedBy);

    Verbs* m_verbs;
    QComboBox* m_listNames;
    QFrame* m_frame3;
    KeyedTree* m_tree;
    ListsTree* m_lists;
    ListsMenu* m_menu;
    QPointer<RunList1> m_runDialog;
    GradientButton* m_saveListBtn;
    GradientButton* m_runListBtn;
    GradientButton* m_newListBtn;
};
