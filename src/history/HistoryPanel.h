#pragma once

#include "widgets/SharedTreeTab.h"

class GradientButton;
class HistoryTree;
class KeyedTree;
class QFrame;
class Verbs;

// The History tab: the history tree SSTree3 above the shared Favorites tree panel, Save and Clear
// below it.
class HistoryPanel : public SharedTreeTab
{
    Q_OBJECT

public:
    explicit HistoryPanel(Verbs* verbs);

    // The history tree, its pages in place.
    KeyedTree* SSTree3() const;
    HistoryTree* history() const { return m_history; }
    QFrame* Frame5() const { return m_frame5; }
    GradientButton* SaveHistBtn() const { return m_saveHistBtn; }
    GradientButton* ClearHistBtn() const { return m_clearHistBtn; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QFrame* m_frame5;
    KeyedTree* m_tree;
    HistoryTree* m_history;
    GradientButton* m_saveHistBtn;
    GradientButton* m_clearHistBtn;
};
