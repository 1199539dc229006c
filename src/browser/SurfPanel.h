#pragma once

#include <QColor>
#include <QDate>
#include <QFrame>

#include <array>
#include <functional>

class GradientButton;
class QCalendarWidget;
class QGroupBox;
class WebForm1;

// The Surf tab's panel (Frame1): one row per browsing slot (the row button with the page's title
// and address, and two buttons that drag the page to Favorites or to a list), the New button, the
// new-window toggle, the row size switch and the calendar button with its panel. It owns
// NewBtnAction, through which every part of the program opens a page.
class SurfPanel : public QFrame
{
    Q_OBJECT

public:
    explicit SurfPanel(QWidget* parent);

    void setPool(WebForm1* pool) { m_pool = pool; }
    WebForm1* pool() const { return m_pool; }

    GradientButton* Button(int row) const { return m_button.at(size_t(row)); }
    GradientButton* AddFavBtn(int row) const { return m_addFav.at(size_t(row)); }
    GradientButton* AddListBtn(int row) const { return m_addList.at(size_t(row)); }
    GradientButton* NewBtn() const { return m_newBtn; }
    GradientButton* ToggleBtn() const { return m_toggleBtn; }
    GradientButton* QuikViewBtn() const { return m_quikViewBtn; }
    GradientButton* CalendarBtn() const { return m_calendarBtn; }
    QGroupBox* Frame7() const { return m_frame7; }
    // The month calendar on Frame7; made when first needed, since most starts never show it.
    QCalendarWidget* Calendar1();
    // The day the calendar shows (set to today when the main window loads).
    void setCalendarDate(const QDate& date);
    // The calendar's background and text colours (now, or when it is made).
    void setCalendarColors(const QColor& back, const QColor& text);
    QFrame* Frame8() const { return m_frame8; }

    // Opens CurrentUrl in a new browser window or in the current one.
    void NewBtnAction(bool newWindow);
    // Takes the lowest free slot as WindowIndex and counts it; false when all eight are taken.
    bool FindFreeSlot();
    // The new-window switch follows its button's state.
    void ToggleBtn_Click();
    // Opens CurrentUrl in a new window in `slot`, as NewBtnAction(true) opens it in the lowest free
    // one (reopening a session puts each page back in its own slot). Nothing when `slot` is taken.
    void openInSlot(int slot);
    void NavigateCurrentSlot(bool newWindow);

    // Stacks the rows from the top for a form `formWidth` twips wide.
    void ArrangeRows(int formWidthTwips);
    // Places the command buttons and panels below the rows; sizes in twips.
    void arrangeControls(int widthTwips, int heightTwips);

    // The row looks: normal (button colours) and active (selected or loading).
    // Brings the slot's window forward and hides the others, as a click on its row does.
    void bringForward(int slot) { Button_Click(slot - 1); }
    void setRowNormal(int row);
    void setRowActive(int row);
    void setAllRowsNormal();
    void hideRow(int row);
    void showRow(int row);

    // CalendarBtn is available while the rows leave room for the calendar.
    void updateCalendarAvailability(int normalRowsLimit, int smallRowsLimit);
    bool smallRows() const;

    // Set by the timed run around its own call of NewBtnAction.
    bool RunNavigating = false;
    // The row being dragged to Favorites or to a list, for the drop side.
    int DragRowIndex = 0;
    bool RowDragToFavorites = false;
    bool RowDragToList = false;

    // The selected tab changes when a row's page is dragged off to Favorites (1) or Lists (2).
    void setTabSelector(std::function<void(int)> selectTab) { m_selectTab = std::move(selectTab); }

signals:
    // A looping timed run with all eight windows open goes back to its first page.
    void runPositionResetRequested();

private:
    void NewBtn_Click();
    void Button_Click(int row);
    void AddFavBtn_Click(int row);
    void AddListBtn_Click(int row);
    void QuikViewBtn_Click();
    void CalendarBtn_Click();
    // Opens a new window in the lowest free slot, or in `slot` when one is given.
    void openNewSlot(bool updateCalendar, int slot = 0);
    // Hands the row's page to a drag of `source` towards the tree on `tab`.
    void dragRowPage(int row, GradientButton* source, int tab);

    WebForm1* m_pool = nullptr;
    std::function<void(int)> m_selectTab;
    std::array<GradientButton*, 8> m_button{};
    std::array<GradientButton*, 8> m_addFav{};
    std::array<GradientButton*, 8> m_addList{};
    GradientButton* m_newBtn;
    GradientButton* m_toggleBtn;
    GradientButton* m_quikViewBtn;
    GradientButton* m_calendarBtn;
    QGroupBox* m_frame7;
    QCalendarWidget* m_calendar = nullptr;
    QDate m_calendarDate;
    QColor m_calendarBack;
    QColor m_calendarText;
    void paintCalendar();
    QFrame* m_frame8;
    int m_formWidthTwips = 4700;
    int m_rowHeightTwips = 750;
};
