#include "FavoritesPanel.h"

#include "FavoritesMenu.h"
#include "FavoritesTree.h"
#include "FavoritesWatch.h"
#include "QuickButtons.h"
#include "ShellServices.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QFrame>
#include <QVBoxLayout>

FavoritesPanel::FavoritesPanel(QFrame* sharedPanel, Verbs* verbs, SurfPanel* rows, QTabWidget* tabs)
{
    setObjectName(QStringLiteral("FavoritesPanel"));
    m_tree = new KeyedTree(QStringLiteral("SSTree1"), sharedPanel);
    m_tree->setAccessibleName(tr("Favorites"));
    m_tree->setHeaderLabel(tr("Favorites")); // what a screen reader says of the hidden header
    m_tree->setToolTip(tr("Your Favorites folder"));
    m_distFavBtn = new GradientButton(QStringLiteral("DistFavBtn"), QString(), sharedPanel);
    auto* treeLayout = new QVBoxLayout(sharedPanel);
    treeLayout->setContentsMargins(0, 0, 0, 0);
    treeLayout->setSpacing(2);
    treeLayout->addWidget(m_tree, 1);
    treeLayout->addWidget(m_distFavBtn);

    m_frame4 = new QFrame(this);
    m_frame4->setObjectName(QStringLiteral("Frame4"));
    setUpper(m_frame4);
    m_quickButtons = new QuickButtons(m_frame4, m_distFavBtn, verbs, tabs);
    m_favorites = new FavoritesTree(m_tree, m_distFavBtn, verbs, rows);
    m_menu = new FavoritesMenu(m_tree, m_favorites);
    m_watch = new FavoritesWatch(m_tree, m_favorites);
    m_quickButtons->setTree(m_favorites);

    m_saveBtn = new GradientButton(QStringLiteral("SaveBtn"), tr("Save"), this);
    m_saveBtn->setToolTip(tr("Save the Web Page Button Assignments"));
    m_orgFavBtn = new GradientButton(QStringLiteral("OrgFavBtn"), tr("Organize"), this);
    m_orgFavBtn->setToolTip(tr("Organize your Favorites folder in the file manager"));
    m_refreshBtn = new GradientButton(QStringLiteral("RefreshBtn"), tr("Refresh"), this);
    m_refreshBtn->setToolTip(tr("Read the Favorites folder again"));
    for (GradientButton* command : {m_saveBtn, m_orgFavBtn, m_refreshBtn})
        addCommand(command);
    connect(m_saveBtn, &GradientButton::clicked, m_quickButtons, &QuickButtons::SaveBtn_Click);
    connect(m_refreshBtn, &GradientButton::clicked, m_favorites, &FavoritesTree::RefreshBtn_Click);
    connect(m_orgFavBtn, &GradientButton::clicked, this, [] {
        const QString folder = globals().FavoritesPath;
        if (!ShellServices::openFolder(folder))
            DialogService::message(QStringLiteral("No file manager could be started to organize your Favorites "
                                                  "folder. Open it yourself: ") +
                                   folder);
    });
}
