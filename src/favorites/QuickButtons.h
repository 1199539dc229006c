#pragma once

#include <QObject>

#include <array>

class FavoritesTree;
class GradientButton;
class QWidget;
class QTabWidget;
class Verbs;

// The 32 quick-access page buttons FavBtn_0 .. FavBtn_31, four to a row. A favourite dragged from the
// Favorites tree onto a button is put on it (with the shortcut's icon); a click opens the button's page. The
// assignments are kept in the button file; DistFavBtn switches the tree between opening a
// favourite and handing it out to buttons and lists.
class QuickButtons : public QObject
{
    Q_OBJECT

public:
    static constexpr int kButtonCount = 32;

    // The buttons are made in `buttonFrame`; `distribute` is DistFavBtn.
    QuickButtons(QWidget* buttonFrame, GradientButton* distribute, Verbs* verbs, QTabWidget* tabs);
    void setTree(FavoritesTree* tree) { m_tree = tree; }

    GradientButton* FavBtn(int index) const { return m_buttons.at(size_t(index)); }
    GradientButton* DistFavBtn() const { return m_distribute; }

    // Puts CurrentUrl, CurrentTitle and the icon of the shortcut FavFolderSel on the button.
    void AssignPageToButton(int index);
    // At start: every assigned button reads its shortcut again and shows it.
    void LoadButtons();
    void FavBtn_Click(int index);
    void FavBtn_DragDrop(int index, const QString& sourceTag);
    void SaveBtn_Click();
    void DistFavBtn_Click();

    // True while the History tab's distribute mode is on (the history tree reads it).
    bool HistoryToFavorites = false;

private:
    void showFree(int index);

    QWidget* m_frame;
    GradientButton* m_distribute;
    Verbs* m_verbs;
    QTabWidget* m_tabs;
    FavoritesTree* m_tree = nullptr;
    std::array<GradientButton*, kButtonCount> m_buttons{};
};
