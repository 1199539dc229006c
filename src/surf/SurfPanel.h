#pragma once

#include <QColor>
#include <QDate>
#include <QFrame>

#include <array>
#include <functional>

class GradientButton;
class QCalendarWidget;
class QGroupBox;
class Verbs;
class WindowStates;

// The Surf tab's panel (Frame1): one row per browsing slot (the row button with the page's title
// and address, and two buttons that drag the page to Favorites or to a list), the New button, the
// new-window toggle, the row size switch and the calendar button with its panel. Its buttons call
// the program's verbs; its rows follow what the verbs and the browser windows tell.
class SurfPanel : public QFrame
{
    Q_OBJECT

public:
    explicit SurfPanel(QWidget* parent);

    // The verbs the buttons call and the rows follow.
    void setVerbs(Verbs* verbs);
    // The pictures beside the rows that tell how each window's page is doing.
    WindowStates* states() const { return m_states; }

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

    // The new-window switch follows its button's state.
    void ToggleBtn_Click();

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

    // The row being dragged to Favorites or to a list, for the drop side.
    int DragRowIndex = 0;
    bool RowDragToFavorites = false;
    bool RowDragToList = false;

    // The selected tab changes when a row's page is dragged off to Favorites (1) or Lists (2).
    void setTabSelector(std::function<void(int)> selectTab) { m_selectTab = std::move(selectTab); }

private:
    void NewBtn_Click();
    void Button_Click(int row);
    void AddFavBtn_Click(int row);
    void AddListBtn_Click(int row);
    void QuikViewBtn_Click();
    void CalendarBtn_Click();
    // What the verbs and the windows tell the rows.
    void showRowNavigating(int slot, const QString& address);
    void showRowCompleted(int slot, const QString& url, const QString& title);
    void showRowTitle(int slot, const QString& title);
    void showWindowShown(int slot, bool updateCalendar);
    void showBroughtForward(int previousSlot, int slot);
    void showLastWindowChosen();
    void showNewWindowMode(bool newWindows);
    // Hands the row's page to a drag of `source` towards the tree on `tab`.
    void dragRowPage(int row, GradientButton* source, int tab);

    Verbs* m_verbs = nullptr;
    WindowStates* m_states = nullptr;
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
