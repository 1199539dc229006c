#pragma once

#include "CalendarFrame.h"
#include "SurfRows.h"

#include <QFrame>

#include <functional>

class GradientButton;
class QAction;
class QCalendarWidget;
class QMenu;
class QGroupBox;
class Verbs;
class WindowStates;

// The Surf tab's panel (Frame1): the rows of the browsing slots (SurfRows) with the pictures of
// their windows' states, the New button, the new-window toggle, the row size switch and the
// calendar button with its panel. Its buttons call the program's verbs; its rows follow what the
// verbs and the browser windows tell.
class SurfPanel : public QFrame
{
    Q_OBJECT

public:
    explicit SurfPanel(QWidget* parent);

    // The verbs the buttons call and the rows follow.
    void setVerbs(Verbs* verbs);
    // The pictures beside the rows that tell how each window's page is doing.
    WindowStates* states() const { return m_states; }
    SurfRows* rows() const { return m_rows; }

    GradientButton* Button(int row) const { return m_rows->Button(row); }
    GradientButton* AddFavBtn(int row) const { return m_rows->AddFavBtn(row); }
    GradientButton* AddListBtn(int row) const { return m_rows->AddListBtn(row); }
    GradientButton* NewBtn() const { return m_newBtn; }
    GradientButton* ToggleBtn() const { return m_toggleBtn; }
    GradientButton* QuikViewBtn() const { return m_quikViewBtn; }
    GradientButton* CalendarBtn() const { return m_calendarBtn; }
    CalendarFrame* Frame7() const { return m_frame7; }
    // The month calendar on Frame7; made when first needed, since most starts never show it.
    QCalendarWidget* Calendar1() { return m_frame7->Calendar1(); }
    void setCalendarDate(const QDate& date) { m_frame7->setCalendarDate(date); }
    void setCalendarColors(const QColor& back, const QColor& text) { m_frame7->setCalendarColors(back, text); }
    QFrame* Frame8() const { return m_frame8; }

    // The new-window switch follows its button's state.
    void ToggleBtn_Click();

    // Stacks the rows from the top for a form `formWidth` twips wide.
    void ArrangeRows(int formWidthTwips);
    // Places the command buttons and panels below the rows; sizes in twips.
    void arrangeControls(int widthTwips, int heightTwips);

    // Brings the slot's window forward and hides the others, as a click on its row does.
    void bringForward(int slot) { Button_Click(slot - 1); }
    // The row looks: normal (button colours) and active (selected or loading).
    void setRowNormal(int row) { m_rows->setRowNormal(row); }
    void setRowActive(int row) { m_rows->setRowActive(row); }
    void setAllRowsNormal() { m_rows->setAllRowsNormal(); }
    void hideRow(int row) { m_rows->hideRow(row); }
    void showRow(int row) { m_rows->showRow(row, smallRows()); }

    // CalendarBtn is available while the rows leave room for the calendar.
    void updateCalendarAvailability(int normalRowsLimit, int smallRowsLimit);
    bool smallRows() const;

    // The row being dragged to Favorites or to a list, for the drop side.
    int DragRowIndex = 0;
    bool RowDragToFavorites = false;
    bool RowDragToList = false;

    // The selected tab changes when a row's page is dragged off to Favorites (1) or Lists (2).
    void setTabSelector(std::function<void(int)> selectTab) { m_selectTab = std::move(selectTab); }

    // The panel's menu (a right click on it or on a row): "Save Open Windows as a List".
    QMenu* menu() const { return m_menu; }
    QAction* saveOpenWindowsAction() const { return m_saveOpenWindows; }

signals:
    // A row's add button pressed from the keyboard: CurrentUrl and CurrentTitle hold the row's
    // page, and the tree's tab is in front; the tree adds it where its current item is.
    void rowPageToFavorites();
    void rowPageToList();
    // "Save Open Windows as a List" chosen: the lists keep the open windows' pages as a new list.
    void saveOpenWindowsWanted();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void NewBtn_Click();
    void Button_Click(int row);
    void AddFavBtn_Click(int row);
    void AddListBtn_Click(int row);
    void QuikViewBtn_Click();
    // Hands the row's page to a drag of `source` towards the tree on `tab`.
    void dragRowPage(int row, GradientButton* source, int tab);
    // Hands the row's page to the tree on `tab` without a drag.
    void takeRowPage(int row, int tab);
    // What the verbs tell the rows.
    void showWindowShown(int slot, bool updateCalendar);
    void showBroughtForward(int previousSlot, int slot);
    void showLastWindowChosen();
    void showNewWindowMode(bool newWindows);
    void showRunPaused();

    Verbs* m_verbs = nullptr;
    QMenu* m_menu;
    QAction* m_saveOpenWindows;
    SurfRows* m_rows;
    WindowStates* m_states = nullptr;
    std::function<void(int)> m_selectTab;
    GradientButton* m_newBtn;
    GradientButton* m_toggleBtn;
    GradientButton* m_quikViewBtn;
    GradientButton* m_calendarBtn;
    CalendarFrame* m_frame7;
    QFrame* m_frame8;
    int m_formWidthTwips = 4700;
    int m_rowHeightTwips = 750;
};
