#pragma once

#include <QObject>

#include <array>

class GradientButton;
class QWidget;

// The eight rows of the Surf tab, one per browsing slot: the row button with the page's title (its
// address while it loads, and as its tag and tool tip), and the two buttons that drag the page to
// Favorites or to a list. Their looks (normal, or active: selected or loading), which of them
// show, and where they stand.
class SurfRows : public QObject
{
    Q_OBJECT

public:
    static constexpr int kRows = 8;

    // The buttons are made on `panel`, hidden until their slot has a window.
    explicit SurfRows(QWidget* panel);

    GradientButton* Button(int row) const { return m_button.at(size_t(row)); }
    GradientButton* AddFavBtn(int row) const { return m_addFav.at(size_t(row)); }
    GradientButton* AddListBtn(int row) const { return m_addList.at(size_t(row)); }
    const std::array<GradientButton*, kRows>& buttons() const { return m_button; }

    void setRowNormal(int row);
    void setRowActive(int row);
    void setAllRowsNormal();
    void hideRow(int row);
    // Small rows have no list button.
    void showRow(int row, bool small);
    // Small rows drop their list buttons; normal rows show them again for the first `openRows`.
    void setSmall(bool small, int openRows);
    // Stacks the rows from `firstTop` for a form `formWidthTwips` wide, each `rowHeight` high; the
    // width the row buttons and their add buttons take together (twips).
    int arrange(int formWidthTwips, int rowHeightTwips, bool small);

    // What the slot's window tells its row.
    void showNavigating(int slot, const QString& address);
    void showCompleted(int slot, const QString& url, const QString& title);
    void showTitle(int slot, const QString& title);

signals:
    void rowClicked(int row);
    // The add buttons start their drags while the mouse button is held, so that the page can be
    // carried to the tree.
    void addFavPressed(int row);
    void addListPressed(int row);
    // The add buttons pressed from the keyboard: the page goes to the place chosen in the tree.
    void addFavChosen(int row);
    void addListChosen(int row);

private:
    std::array<GradientButton*, kRows> m_button{};
    std::array<GradientButton*, kRows> m_addFav{};
    std::array<GradientButton*, kRows> m_addList{};
};
