#include "HistoryPanel.h"

#include "HistoryTree.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QEvent>
#include <QFrame>
#include <QVBoxLayout>

KeyedTree* HistoryPanel::SSTree3() const
{
    m_history->ensureLoaded();
    return m_tree;
}

HistoryPanel::HistoryPanel(Verbs* verbs)
{
    setObjectName(QStringLiteral("HistoryPanel"));
    m_frame5 = new QFrame(this);
    m_frame5->setObjectName(QStringLiteral("Frame5"));
    m_tree = new KeyedTree(QStringLiteral("SSTree3"), m_frame5);
    m_tree->setAccessibleName(tr("History"));
    m_tree->setHeaderLabel(tr("History")); // what a screen reader says of the hidden header
    m_tree->setToolTip(QStringLiteral("Drag and Drop History URL's to Favorites"));
    auto* layout = new QVBoxLayout(m_frame5);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);
    setUpper(m_frame5);
    m_history = new HistoryTree(m_tree, verbs);
    // Whoever looks at the tree sees all of it.
    m_tree->installEventFilter(this);

    m_saveHistBtn = new GradientButton(QStringLiteral("SaveHistBtn"), QStringLiteral("Save"), this);
    m_saveHistBtn->setToolTip(QStringLiteral("Save History"));
    m_clearHistBtn = new GradientButton(QStringLiteral("ClearHistBtn"), QStringLiteral("Clear"), this);
    m_clearHistBtn->setToolTip(QStringLiteral("Clear History"));
    addCommand(m_saveHistBtn);
    addCommand(m_clearHistBtn);
    connect(m_saveHistBtn, &GradientButton::clicked, m_history, &HistoryTree::SaveHistBtn_Click);
    connect(m_clearHistBtn, &GradientButton::clicked, m_history, &HistoryTree::ClearHistBtn_Click);
}

bool HistoryPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_tree && event->type() == QEvent::Show)
        m_history->ensureLoaded();
    return SharedTreeTab::eventFilter(watched, event);
}
