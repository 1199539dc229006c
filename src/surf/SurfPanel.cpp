#include "SurfPanel.h"

#include "WindowStates.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "watch/WindowRecovery.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/Twips.h"

#include <array>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

namespace {

constexpr int kNormalRowHeight = 750; // twips
constexpr int kSmallRowHeight = 500;
constexpr int kFirstRowTop = 200;
constexpr int kRowLeft = 165;
constexpr int kCalendarLimitNormalRows = 3;
constexpr int kCalendarLimitSmallRows = 5;
constexpr int kCommandHeight = 420;
constexpr int kFavoritesTab = 1;
constexpr int kListsTab = 2;
constexpr int kCalendarPanelHeight = 3000;
constexpr int kCalendarLimitSmallRowsAtUnload = 7;

} // namespace

SurfPanel::SurfPanel(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("Frame1"));

    m_frame8 = new QFrame(this);
    m_frame8->setObjectName(QStringLiteral("Frame8"));
    auto* hint =
        new QLabel(tr("Press <b>New</b> to open a browser window at your New Explorer URL, or open a "
                      "page from your Favorites, Lists or History.<br><br>Each browser window gets a "
                      "row here: click it to bring that window to the front."),
                   m_frame8);
    hint->setObjectName(QStringLiteral("Label2"));
    hint->setWordWrap(true);
    hint->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    (new QVBoxLayout(m_frame8))->addWidget(hint);

    m_menu = new QMenu(this);
    m_menu->setObjectName(QStringLiteral("SurfMenu"));
    m_saveOpenWindows = m_menu->addAction(QStringLiteral("Save Open Windows as a List"), this, [this] {
        // The new list is shown where it can be named at once.
        if (m_selectTab)
            m_selectTab(kListsTab);
        emit saveOpenWindowsWanted();
    });
    m_saveOpenWindows->setObjectName(QStringLiteral("SaveOpenWindowsAction"));

    m_rows = new SurfRows(this);
    connect(m_rows, &SurfRows::rowClicked, this, &SurfPanel::Button_Click);
    connect(m_rows, &SurfRows::addFavPressed, this, &SurfPanel::AddFavBtn_Click);
    connect(m_rows, &SurfRows::addListPressed, this, &SurfPanel::AddListBtn_Click);
    connect(m_rows, &SurfRows::addFavChosen, this, [this](int row) {
        AddFavBtn(row)->setDown(false); // what the tree asks comes before the key is let go
        takeRowPage(row, kFavoritesTab);
        emit rowPageToFavorites();
    });
    connect(m_rows, &SurfRows::addListChosen, this, [this](int row) {
        AddListBtn(row)->setDown(false);
        takeRowPage(row, kListsTab);
        emit rowPageToList();
    });

    m_newBtn = new GradientButton(QStringLiteral("NewBtn"), tr("New"), this);
    m_newBtn->setToolTip(tr("Open a browser window at the New Explorer URL"));
    m_toggleBtn = new GradientButton(QStringLiteral("ToggleBtn"), tr("Window"), this);
    m_toggleBtn->setTwoState(true);
    m_toggleBtn->setToolTip(QStringLiteral("Start a New Internet Explorer Window"));
    m_quikViewBtn = new GradientButton(QStringLiteral("QuikViewBtn"), tr("Small"), this);
    m_quikViewBtn->setTwoState(true);
    m_quikViewBtn->setToolTip(QStringLiteral("Press button to make Web Site Page Buttons smaller"));
    m_calendarBtn = new GradientButton(QStringLiteral("CalendarBtn"), QStringLiteral("Calendar"), this);
    m_calendarBtn->setToolTip(tr("Show or hide the calendar"));
    connect(m_newBtn, &GradientButton::clicked, this, &SurfPanel::NewBtn_Click);
    connect(m_toggleBtn, &GradientButton::clicked, this, &SurfPanel::ToggleBtn_Click);
    connect(m_quikViewBtn, &GradientButton::clicked, this, &SurfPanel::QuikViewBtn_Click);

    m_frame7 = new CalendarFrame(this);
    connect(m_calendarBtn, &GradientButton::clicked, m_frame7, &CalendarFrame::toggle);
}

// ---- what the verbs tell ------------------------------------------------------------------

void SurfPanel::setVerbs(Verbs* verbs)
{
    m_verbs = verbs;
    WebForm1* pool = verbs->pool();
    m_states = new WindowStates(m_rows->buttons(), this);
    connect(verbs, &Verbs::pageOpening, m_frame8, &QWidget::hide);
    connect(verbs, &Verbs::rowsCleared, this, &SurfPanel::setAllRowsNormal);
    connect(verbs, &Verbs::windowShown, this, &SurfPanel::showWindowShown);
    connect(verbs, &Verbs::windowBroughtForward, this, &SurfPanel::showBroughtForward);
    connect(verbs, &Verbs::lastWindowModeChosen, this, &SurfPanel::showLastWindowChosen);
    connect(verbs, &Verbs::newWindowModeChanged, this, &SurfPanel::showNewWindowMode);
    connect(pool, &WebForm1::rowNavigating, m_rows, &SurfRows::showNavigating);
    connect(pool, &WebForm1::rowCompleted, m_rows, &SurfRows::showCompleted);
    connect(pool, &WebForm1::rowTitleChanged, m_rows, &SurfRows::showTitle);
    connect(pool, &WebForm1::rowClosed, this, [this](int slot) { hideRow(slot - 1); });
    connect(pool, &WebForm1::unloadedPool, this, [this] {
        updateCalendarAvailability(kCalendarLimitNormalRows, kCalendarLimitSmallRowsAtUnload);
    });
    connect(pool->recovery(), &WindowRecovery::stateShown, m_states, &WindowStates::show);
    connect(verbs, &Verbs::stateChanged, this, &SurfPanel::showRunPaused);
}

void SurfPanel::showRunPaused()
{
    // Every run's window: the run dialog's and those of runs in other windows.
    std::array<WindowState, kWindowSlots + 1> bySlot{};
    for (const WindowState& window : m_verbs->windows())
        if (window.slot >= 1 && window.slot <= kWindowSlots)
            bySlot[size_t(window.slot)] = window;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        m_states->showPaused(slot, bySlot[size_t(slot)].runPaused, bySlot[size_t(slot)].runHeldByPerson);
}

void SurfPanel::showWindowShown(int slot, bool updateCalendar)
{
    showRow(slot - 1);
    if (updateCalendar)
        updateCalendarAvailability(kCalendarLimitNormalRows, kCalendarLimitSmallRows);
}

void SurfPanel::showBroughtForward(int previousSlot, int slot)
{
    setRowNormal(previousSlot - 1);
    setRowActive(slot - 1);
}

void SurfPanel::showLastWindowChosen()
{
    // The switch is asked again as if clicked, as the limit's question always did.
    if (globals().NewWindowMode)
        ToggleBtn_Click();
}

void SurfPanel::showNewWindowMode(bool newWindows)
{
    m_toggleBtn->setValue(!newWindows);
    m_toggleBtn->setToolTip(newWindows ? QStringLiteral("Start a New Internet Explorer Window")
                                       : QStringLiteral("Use Current Internet Explorer Window"));
}

// ---- the buttons ---------------------------------------------------------------------------

void SurfPanel::NewBtn_Click()
{
    m_verbs->openNewPage(globals().NewWindowMode);
}

void SurfPanel::Button_Click(int row)
{
    m_verbs->bringForward(row + 1);
}

void SurfPanel::AddFavBtn_Click(int row)
{
    RowDragToFavorites = true;
    dragRowPage(row, AddFavBtn(row), kFavoritesTab);
}

void SurfPanel::AddListBtn_Click(int row)
{
    RowDragToList = true;
    dragRowPage(row, AddListBtn(row), kListsTab);
}

void SurfPanel::takeRowPage(int row, int tab)
{
    Globals& g = globals();
    g.CurrentUrl = Button(row)->tag();
    g.CurrentTitle = Button(row)->text();
    DragRowIndex = row;
    if (m_selectTab)
        m_selectTab(tab);
}

void SurfPanel::dragRowPage(int row, GradientButton* source, int tab)
{
    // The target's tab comes forward before the drag begins: the drop lands on its tree.
    takeRowPage(row, tab);
    ControlDrag::start(source, source->tag());
    source->setDown(false);
}

void SurfPanel::ToggleBtn_Click()
{
    m_verbs->setNewWindowMode(!m_toggleBtn->value());
}

void SurfPanel::QuikViewBtn_Click()
{
    m_rowHeightTwips = smallRows() ? kSmallRowHeight : kNormalRowHeight;
    m_rows->setSmall(smallRows(), globals().WindowCount);
    ArrangeRows(m_formWidthTwips);
}

bool SurfPanel::smallRows() const
{
    return m_quikViewBtn->value();
}

void SurfPanel::updateCalendarAvailability(int normalRowsLimit, int smallRowsLimit)
{
    const int limit = smallRows() ? smallRowsLimit : normalRowsLimit;
    m_calendarBtn->setEnabled(globals().WindowCount <= limit);
    if (!m_calendarBtn->isEnabled())
        m_frame7->hide(); // the rows now need the calendar's room
}

// ---- layout --------------------------------------------------------------------------------

void SurfPanel::ArrangeRows(int formWidthTwips)
{
    m_formWidthTwips = formWidthTwips;
    const int width = m_rows->arrange(formWidthTwips, m_rowHeightTwips, smallRows());
    m_frame8->setGeometry(twipsRect(kRowLeft, kFirstRowTop, width, 4 * kNormalRowHeight));
}

void SurfPanel::arrangeControls(int widthTwips, int heightTwips)
{
    const int commandTop = heightTwips - kCommandHeight - 120;
    const int usable = widthTwips - 2 * kRowLeft;
    const int gap = 60;
    const int each = (usable - 3 * gap) / 4;
    GradientButton* commands[] = {m_newBtn, m_toggleBtn, m_quikViewBtn, m_calendarBtn};
    for (int i = 0; i < 4; ++i)
        commands[i]->setGeometry(twipsRect(kRowLeft + i * (each + gap), commandTop, each, kCommandHeight));
    const int calendarTop = std::max(kFirstRowTop, commandTop - 120 - kCalendarPanelHeight);
    m_frame7->setGeometry(twipsRect(kRowLeft, calendarTop, usable, commandTop - 120 - calendarTop));
}

void SurfPanel::contextMenuEvent(QContextMenuEvent* event)
{
    m_saveOpenWindows->setEnabled(m_verbs && !m_verbs->windows().isEmpty());
    m_menu->popup(event->globalPos());
    event->accept();
}
