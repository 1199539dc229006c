#include "QuickButtons.h"

#include "FavoritesTree.h"
#include "ShellServices.h"
#include "shortcuts/ShortcutFile.h"
#include "verbs/Verbs.h"
#include "core/ButtonFile.h"
#include "core/Globals.h"
#include "core/PageText.h"
#include "widgets/GradientButton.h"

#include <QGridLayout>
#include <QTabWidget>


namespace {

constexpr int kColumns = 4;
const QString kHintOff = QStringLiteral("Click on Favorite Link to go to Web Site");
const QString kHintDistribute = QStringLiteral("Distribute Favorites to Buttons or Lists");
const QString kHintHistory = QStringLiteral("Add Browsing History to Favorites");
constexpr int kFavoritesTab = 2; // tabs counted from 1
constexpr int kListsTab = 3;
constexpr int kHistoryTab = 4;

// A button shows the favourite's own name (the file's name up to its last dot); its tool tip
// holds the name below the Favorites folder. Worked out on the name in place: a name read from
// the button file may be of any length.
QString caption(const QString& relativeName)
{
    // One pass from the end finds the last dot and the last separator.
    qsizetype dot = -1;
    qsizetype start = relativeName.size();
    for (; start > 0; --start) {
        const QChar c = relativeName.at(start - 1);
        if (c == u'/' || c == u'\\')
            break;
        if (c == u'.' && dot < 0)
            dot = start - 1;
    }
    return QStringView(relativeName).sliced(start, (dot >= 0 ? dot : relativeName.size()) - start).toString();
}

} // namespace

QuickButtons::QuickButtons(QWidget* buttonFrame, GradientButton* distribute, Verbs* verbs, QTabWidget* tabs)
    : QObject(buttonFrame), m_frame(buttonFrame), m_distribute(distribute), m_verbs(verbs), m_tabs(tabs)
{
    auto* grid = new QGridLayout(buttonFrame);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    for (int i = 0; i < kButtonCount; ++i) {
        auto* button = new GradientButton(QStringLiteral("FavBtn_%1").arg(i), QString(), buttonFrame);
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        grid->addWidget(button, i / kColumns, i % kColumns);
        button->setAcceptsControlDrops(true);
        button->setIconSize(QSize(16, 16));
        m_buttons[size_t(i)] = button;
        connect(button, &GradientButton::clicked, this, [this, i] { FavBtn_Click(i); });
        connect(button, &GradientButton::controlDropped, this,
                [this, i](const QString& tag) { FavBtn_DragDrop(i, tag); });
        showFree(i);
    }
    m_distribute->setTwoState(true);
    m_distribute->setText(kHintOff);
    m_distribute->setToolTip(kHintOff);
    connect(m_distribute, &GradientButton::clicked, this, &QuickButtons::DistFavBtn_Click);
}

void QuickButtons::showFree(int index)
{
    GradientButton* button = FavBtn(index);
    button->setText(QString());
    button->setIcon(QIcon());
    button->setTag(QString());
    button->setToolTip(tr("Drag a favourite here from the tree below (turn on the distribute mode first)"));
    button->setAccessibleName(tr("Quick button %1, free").arg(index + 1));
}

void QuickButtons::AssignPageToButton(int index)
{
    if (index < 0 || index >= kButtonCount)
        return;
    Globals& g = globals();
    GradientButton* button = FavBtn(index);
    button->setIcon(ShellServices::smallIcon(g.FavFolderSel));
    button->setColors(g.ButtonBackColor, g.ButtonTextColor, g.ButtonEndColor);
    button->setTag(g.CurrentUrl);
    const QString name = caption(g.CurrentTitle);
    button->setToolTip(boundedPageText(g.CurrentTitle));
    button->setText(name);
    button->setAccessibleName(tr("Quick button %1: %2").arg(index + 1).arg(boundedPageText(name)));
    g.BtnUrl[index] = g.CurrentUrl;
    g.BtnTitle[index] = g.CurrentTitle;
}

void QuickButtons::LoadButtons()
{
    Globals& g = globals();
    for (int i = 0; i < kButtonCount; ++i) {
        if (g.BtnUrl[i].isEmpty()) {
            showFree(i);
            continue;
        }
        // Names kept by older installations may separate folders with "\".
        g.FavFolderSel = g.FavoritesPath + u'/' + QString(g.BtnTitle[i]).replace(u'\\', u'/');
        ReadFavoriteFile(g.FavFolderSel);
        AssignPageToButton(i);
    }
}

void QuickButtons::FavBtn_Click(int index)
{
    Globals& g = globals();
    GradientButton* button = FavBtn(index);
    if (button->tag().isEmpty())
        return;
    g.CurrentUrl = button->tag();
    g.CurrentTitle = button->toolTip();
    m_verbs->NewBtnAction(g.NewWindowMode);
}

void QuickButtons::FavBtn_DragDrop(int index, const QString&)
{
    // Only a favourite dragged out of the Favorites tree is taken.
    if (!m_tree || !m_tree->mouseDownFlag())
        return;
    AssignPageToButton(index);
    globals().ButtonsChanged = true;
    m_tree->endDrag();
}

void QuickButtons::SaveBtn_Click()
{
    SaveButtonFile(appFilePath(QString::fromLatin1(kButtonFileName)));
}

void QuickButtons::DistFavBtn_Click()
{
    const int tab = m_tabs->currentIndex() + 1;
    QString hint = kHintOff;
    HistoryToFavorites = false;
    if (m_distribute->value()) {
        if (tab == kFavoritesTab || tab == kListsTab)
            hint = kHintDistribute;
        else if (tab == kHistoryTab)
            hint = kHintHistory;
        HistoryToFavorites = tab == kHistoryTab;
    }
    m_distribute->setText(hint);
    m_distribute->setToolTip(hint);
}
