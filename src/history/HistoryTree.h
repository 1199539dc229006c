#pragma once

#include <QObject>
#include <QPoint>

class HistoryModel;
class KeyedNode;
class KeyedTree;
class Verbs;

// The history tree, SSTree3, showing the history the verbs keep (HistoryModel): one group per
// browser window ("Internet Explorer 1" .. "Internet Explorer 8") and under it every page that
// window showed, each once (key = address + "/" + group). A page opens with a double click and can be dragged to the Favorites or to a list.
class HistoryTree : public QObject
{
    Q_OBJECT

public:
    HistoryTree(KeyedTree* tree, Verbs* verbs);

    KeyedTree* tree() const { return m_tree; }

    void CreateHistoryRoots();
    // The pages of the history records are put into the tree when it is first needed (shown,
    // saved, added to) or soon after start, so that a long history does not hold the start up.
    void LoadHistoryTreeLater();
    void ensureLoaded();
    // Adds CurrentUrl/CurrentTitle under `group`; false (and nothing changes) when that window's
    // history holds the page already.
    bool CreateNode3(const QString& group);
    // Builds the tree from the history.
    void LoadHistoryTree();
    void SaveHistBtn_Click();
    void ClearHistBtn_Click();

    void nodeDoubleClicked(KeyedNode* node);
    void mousePressed(const QPoint& pos, Qt::MouseButton button);
    // Drags the page out as a press and a move on its node do.
    void dragOut(KeyedNode* node);
    void mouseMoved(const QPoint& pos);
    void mouseReleased();

private:
    KeyedTree* m_tree;
    HistoryModel* m_model;
    Verbs* m_verbs;
    QPoint m_pressPos;
    bool m_pagePressed = false;
    bool m_loadPending = false;
};
