#pragma once

#include "tidy/Duplicates.h"
#include "tidy/LinkCheck.h"
#include "settings/LinkChecksFile.h"

#include <QDialog>
#include <QFutureWatcher>
#include <QHash>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class Verbs;

// "Check Links...": the pages of a Favorites folder (or all of them), a list (or all of them)
// asked for through LinkCheck, and sorted as they answer into dead, moved for good, failing for
// now and fine, with a progress bar and Cancel. Links checked within the last day are not asked
// about again unless "Ask again" is ticked; their last answers stand (LinkChecks.conf). Nothing
// changes without a person's choice: checked moved pages are pointed to their new addresses,
// checked dead ones sent to the trash (or out of their list), through the verbs, after a
// question; the pages that need a look can be kept as a list.
class LinkCheckDialog : public QDialog
{
    Q_OBJECT

public:
    struct Scope
    {
        bool lists = false; // the lists' pages; else the Favorites
        QString under;      // the folder's key or the list's name; "" for all
    };

    LinkCheckDialog(Verbs* verbs, const Scope& scope, QWidget* parent);
    ~LinkCheckDialog() override;
    // The dialog of `parent`'s window for this scope, made when there is none, brought forward.
    static LinkCheckDialog* showFor(Verbs* verbs, const Scope& scope, QWidget* parent);

    // Reads the pages and asks about those due (all of them with `askAgain`).
    void start(bool askAgain);
    bool busy() const { return m_reading || m_check->running(); }
    LinkCheck* check() const { return m_check; }
    QTreeWidget* results() const { return m_tree; }

private:
    void pagesRead();
    void showOutcome(const LinkCheck::Outcome& outcome, bool remembered);
    bool isFavorite(const QString& key) const;
    void finished(bool cancelled);
    QTreeWidgetItem* groupOf(LinkCheck::Verdict verdict);
    void updateMoved();
    void trashDead();
    void keepAsList();
    QList<QTreeWidgetItem*> checkedIn(LinkCheck::Verdict verdict) const;
    void updateButtons();
    QString summary() const;

    Verbs* m_verbs;
    Scope m_scope;
    LinkCheck* m_check;
    QLabel* m_status;
    QProgressBar* m_progress;
    QCheckBox* m_askAgain;
    QTreeWidget* m_tree;
    QPushButton* m_cancel;
    QPushButton* m_update;
    QPushButton* m_trash;
    QPushButton* m_keep;
    QFutureWatcher<QList<Duplicates::Page>> m_reader;
    bool m_reading = false;
    bool m_askAgainPending = false;
    QHash<QString, Duplicates::Page> m_pages; // by key
    QHash<int, QTreeWidgetItem*> m_groups;    // by verdict
    LinkChecksFile::Checks m_checks;
    int m_remembered = 0;
};
