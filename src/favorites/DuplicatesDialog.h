#pragma once

#include "tidy/Duplicates.h"

#include <QDialog>
#include <QFutureWatcher>

class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class Verbs;

// "Find Duplicates": the pages the Favorites (and each list) keep more than once, a group for each
// page with every copy and where it is. Every copy is kept until the person says otherwise: "Keep
// Only This One" unchecks the other copies of its page, and "Send Unchecked to Trash" sends the
// unchecked favourites to the desktop's trash and takes unchecked list pages out of their lists,
// through the verbs, after a question. The favourites' addresses are read away from the window.
class DuplicatesDialog : public QDialog
{
    Q_OBJECT

public:
    DuplicatesDialog(Verbs* verbs, QWidget* parent);
    // The dialog of `parent`'s window, made when there is none and brought to the front.
    static DuplicatesDialog* showFor(Verbs* verbs, QWidget* parent);

    // Looks again (the Favorites and the lists as they are now).
    void search();
    // The search in progress has ended and its groups are shown.
    bool searching() const { return m_searching; }
    QTreeWidget* tree() const { return m_tree; }

signals:
    void searched();

private:
    void showGroups(const QList<Duplicates::Group>& groups);
    void keepOnlySelected();
    void keepAllOfSelected();
    void trashUnchecked();
    void updateButtons();
    QTreeWidgetItem* selectedGroup() const;

    Verbs* m_verbs;
    QCheckBox* m_tracking;
    QLabel* m_status;
    QTreeWidget* m_tree;
    QPushButton* m_keepOnly;
    QPushButton* m_keepAll;
    QPushButton* m_trash;
    QFutureWatcher<QList<Duplicates::Group>> m_watcher;
    bool m_searching = false; // until the groups found are shown
    bool m_again = false;     // a search was asked for while one ran
};
