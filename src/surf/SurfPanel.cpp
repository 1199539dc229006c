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

#include <QCalendarWidget>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr int32_t kPureBlue = 0xFF0000; // 0x00BBGGRR
constexpr int kNormalRowHeight = 750;   // twips
constexpr int kSmallRowHeight = 500;
constexpr int kFirstRowTop = 200;
constexpr int kRowLeft = 165;
constexpr int kRowMargin = 500;
constexpr int kCalendarLimitNormalRows = 3;
constexpr int kCalendarLimitSmallRows = 5;
constexpr int kCommandHeight = 420;
constexpr int kFavoritesTab = 1;
constexpr int kListsTab = 2;
constexpr int kCalendarPanelHeight = 3000;
constexpr int kCalendarLimitSmallRowsAtUnload = 7;

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(twipsToPixels(left), twipsToPixels(top), std::max(0, twipsToPixels(width)),
                 std::max(0, twipsToPixels(height)));
}

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

    for (int row = 0; row < kWindowSlots; ++row) {
        auto* button = new GradientButton(QStringLiteral("Button_%1").arg(row), QString(), this);
        auto* fav = new GradientButton(QStringLiteral("AddFavBtn_%1").arg(row), QStringLiteral("F"), this);
        auto* list = new GradientButton(QStringLiteral("AddListBtn_%1").arg(row), QStringLiteral("L"), this);
        fav->setTag(QStringLiteral("AddBtn"));
        list->setTag(QStringLiteral("AddListBtn"));
        fav->setToolTip(tr("Add this URL to Favorites - Drop on Favorites"));
        list->setToolTip(QStringLiteral("Add this URL to Favorite List - Drop on Favorite List"));
        fav->setAccessibleName(tr("Add page %1 to Favorites").arg(row + 1));
        list->setAccessibleName(tr("Add page %1 to a Favorite List").arg(row + 1));
        m_button[size_t(row)] = button;
        m_addFav[size_t(row)] = fav;
        m_addList[size_t(row)] = list;
        button->hide();
        fav->hide();
        list->hide();
        connect(button, &GradientButton::clicked, this, [this, row] { Button_Click(row); });
        // The drag starts while the mouse button is held, so that it can be carried to the tree.
        connect(fav, &GradientButton::pressed, this, [this, row] { AddFavBtn_Click(row); });
        connect(list, &GradientButton::pressed, this, [this, row] { AddListBtn_Click(row); });
    }
    setAllRowsNormal();

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
    connect(m_calendarBtn, &GradientButton::clicked, this, &SurfPanel::CalendarBtn_Click);

    m_frame7 = new QGroupBox(this);
    m_frame7->setObjectName(QStringLiteral("Frame7"));
    auto* calendarLayout = new QVBoxLayout(m_frame7);
    calendarLayout->setContentsMargins(4, 4, 4, 4);
    m_frame7->hide();
}

QCalendarWidget* SurfPanel::Calendar1()
{
    if (!m_calendar) {
        m_calendar = new QCalendarWidget(m_frame7);
        m_calendar->setObjectName(QStringLiteral("Calendar1"));
        m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        if (m_calendarDate.isValid())
            m_calendar->setSelectedDate(m_calendarDate);
        paintCalendar();
        m_frame7->layout()->addWidget(m_calendar);
    }
    return m_calendar;
}

void SurfPanel::setCalendarColors(const QColor& back, const QColor& text)
{
    m_calendarBack = back;
    m_calendarText = text;
    if (m_calendar)
        paintCalendar();
}

void SurfPanel::paintCalendar()
{
    // The month, its title and the days take the list colours.
    QPalette palette = m_calendar->palette();
    for (QPalette::ColorRole role :
         {QPalette::Base, QPalette::AlternateBase, QPalette::Window, QPalette::Button})
        if (m_calendarBack.isValid())
            palette.setColor(role, m_calendarBack);
    for (QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        if (m_calendarText.isValid())
            palette.setColor(role, m_calendarText);
    m_calendar->setPalette(palette);
    // The title row (month and year) is painted in the highlight colours by the calendar itself:
    // it takes the list colours too.
    if (QWidget* title = m_calendar->findChild<QWidget*>(QStringLiteral("qt_calendar_navigationbar"))) {
        QPalette bar = title->palette();
        for (QPalette::ColorRole role : {QPalette::Highlight, QPalette::Window, QPalette::Button})
            if (m_calendarBack.isValid())
                bar.setColor(role, m_calendarBack);
        for (QPalette::ColorRole role :
             {QPalette::HighlightedText, QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
            if (m_calendarText.isValid())
                bar.setColor(role, m_calendarText);
        title->setPalette(bar);
        for (QWidget* part : title->findChildren<QWidget*>())
            part->setPalette(bar);
    }
}

void SurfPanel::setCalendarDate(const QDate& date)
{
    m_calendarDate = date;
    if (m_calendar)
        m_calendar->setSelectedDate(date);
}

// ---- what the verbs tell ------------------------------------------------------------------

void SurfPanel::setVerbs(Verbs* verbs)
{
    m_verbs = verbs;
    WebForm1* pool = verbs->pool();
    m_states = new WindowStates(m_button, this);
    connect(verbs, &Verbs::pageOpening, m_frame8, &QWidget::hide);
    connect(verbs, &Verbs::rowsCleared, this, &SurfPanel::setAllRowsNormal);
    connect(verbs, &Verbs::windowShown, this, &SurfPanel::showWindowShown);
    connect(verbs, &Verbs::windowBroughtForward, this, &SurfPanel::showBroughtForward);
    connect(verbs, &Verbs::lastWindowModeChosen, this, &SurfPanel::showLastWindowChosen);
    connect(verbs, &Verbs::newWindowModeChanged, this, &SurfPanel::showNewWindowMode);
    connect(pool, &WebForm1::rowNavigating, this, &SurfPanel::showRowNavigating);
    connect(pool, &WebForm1::rowCompleted, this, &SurfPanel::showRowCompleted);
    connect(pool, &WebForm1::rowTitleChanged, this, &SurfPanel::showRowTitle);
    connect(pool, &WebForm1::rowClosed, this, [this](int slot) { hideRow(slot - 1); });
    connect(pool, &WebForm1::unloadedPool, this, [this] {
        updateCalendarAvailability(kCalendarLimitNormalRows, kCalendarLimitSmallRowsAtUnload);
    });
    connect(pool->recovery(), &WindowRecovery::stateShown, m_states, &WindowStates::show);
}

void SurfPanel::showRowNavigating(int slot, const QString& address)
{
    const Globals& g = globals();
    GradientButton* row = Button(slot - 1);
    row->setText(address);
    row->setValue(true);
    row->setBackColor(g.ButtonTextColor);
    row->setTextColor(kPureBlue);
    row->setTag(address);
    row->update();
}

void SurfPanel::showRowCompleted(int slot, const QString& url, const QString& title)
{
    GradientButton* row = Button(slot - 1);
    row->setTag(url);
    row->setToolTip(url);
    row->setText(title);
}

void SurfPanel::showRowTitle(int slot, const QString& title)
{
    GradientButton* row = Button(slot - 1);
    row->setText(title);
    row->update();
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
    Globals& g = globals();
    if (!g.NewWindowUrl.trimmed().isEmpty())
        g.CurrentUrl = g.NewWindowUrl;
    m_verbs->NewBtnAction(g.NewWindowMode);
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

void SurfPanel::dragRowPage(int row, GradientButton* source, int tab)
{
    Globals& g = globals();
    g.CurrentUrl = Button(row)->tag();
    g.CurrentTitle = Button(row)->text();
    DragRowIndex = row;
    // The target's tab comes forward before the drag begins: the drop lands on its tree.
    if (m_selectTab)
        m_selectTab(tab);
    ControlDrag::start(source, source->tag());
    source->setDown(false);
}

void SurfPanel::ToggleBtn_Click()
{
    m_verbs->setNewWindowMode(!m_toggleBtn->value());
}

void SurfPanel::QuikViewBtn_Click()
{
    const Globals& g = globals();
    if (m_quikViewBtn->value()) {
        m_rowHeightTwips = kSmallRowHeight;
        for (GradientButton* list : m_addList)
            list->hide();
    } else {
        m_rowHeightTwips = kNormalRowHeight;
        // Rows are shown by count: the open slots are taken to be the lowest ones.
        for (int row = 0; row < kWindowSlots; ++row) {
            if (row < g.WindowCount) {
                AddFavBtn(row)->show();
                AddListBtn(row)->show();
            }
        }
    }
    ArrangeRows(m_formWidthTwips);
}

void SurfPanel::CalendarBtn_Click()
{
    Calendar1();
    m_frame7->setVisible(!m_frame7->isVisible());
    if (m_frame7->isVisible())
        m_frame7->setTitle(u' ' + Clock::timeOfDay().toString(QStringLiteral("HH:mm:ss")) + u' ');
}

// ---- rows and their looks ------------------------------------------------------------------

void SurfPanel::setRowNormal(int row)
{
    if (row < 0 || row >= kWindowSlots)
        return;
    const Globals& g = globals();
    Button(row)->setColors(g.ButtonBackColor, g.ButtonTextColor, g.ButtonEndColor);
    Button(row)->setValue(false);
}

void SurfPanel::setRowActive(int row)
{
    if (row < 0 || row >= kWindowSlots)
        return;
    const Globals& g = globals();
    Button(row)->setColors(g.ButtonTextColor, kPureBlue, g.ButtonEndColor);
    Button(row)->setValue(true);
}

void SurfPanel::setAllRowsNormal()
{
    for (int row = 0; row < kWindowSlots; ++row)
        setRowNormal(row);
}

void SurfPanel::hideRow(int row)
{
    if (row < 0 || row >= kWindowSlots)
        return;
    Button(row)->hide();
    AddFavBtn(row)->hide();
    AddListBtn(row)->hide();
}

void SurfPanel::showRow(int row)
{
    if (row < 0 || row >= kWindowSlots)
        return;
    Button(row)->show();
    AddFavBtn(row)->show();
    if (!smallRows())
        AddListBtn(row)->show();
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
    const int h = m_rowHeightTwips;
    const int width = formWidthTwips - kRowMargin - h;
    for (int row = 0; row < kWindowSlots; ++row) {
        const int top = kFirstRowTop + row * h;
        Button(row)->setGeometry(twipsRect(kRowLeft, top, width, h));
        // The add buttons share a square of the row's height at the row's right end.
        if (smallRows()) {
            AddFavBtn(row)->setGeometry(twipsRect(kRowLeft + width, top, h, h));
        } else {
            AddFavBtn(row)->setGeometry(twipsRect(kRowLeft + width, top, h, h / 2));
            AddListBtn(row)->setGeometry(twipsRect(kRowLeft + width, top + h / 2, h, h - h / 2));
        }
    }
    m_frame8->setGeometry(twipsRect(kRowLeft, kFirstRowTop, width + h, 4 * kNormalRowHeight));
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
