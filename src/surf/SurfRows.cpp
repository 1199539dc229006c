#include "SurfRows.h"

#include "core/Globals.h"
#include "widgets/GradientButton.h"
#include "widgets/Twips.h"

namespace {

constexpr int32_t kPureBlue = 0xFF0000; // 0x00BBGGRR
constexpr int kFirstRowTop = 200;       // twips
constexpr int kRowLeft = 165;
constexpr int kRowMargin = 500;

bool isRow(int row)
{
    return row >= 0 && row < SurfRows::kRows;
}

// A screen reader hears which window a row is and what it shows, even before its title comes.
void nameRow(GradientButton* row, int index, const QString& shown)
{
    row->setAccessibleName(shown.isEmpty() ? SurfRows::tr("Window %1, not open").arg(index + 1)
                                           : SurfRows::tr("Window %1: %2").arg(index + 1).arg(shown));
}

} // namespace

SurfRows::SurfRows(QWidget* panel) : QObject(panel)
{
    for (int row = 0; row < kRows; ++row) {
        auto* button = new GradientButton(QStringLiteral("Button_%1").arg(row), QString(), panel);
        auto* fav = new GradientButton(QStringLiteral("AddFavBtn_%1").arg(row), QStringLiteral("F"), panel);
        auto* list = new GradientButton(QStringLiteral("AddListBtn_%1").arg(row), QStringLiteral("L"), panel);
        fav->setTag(QStringLiteral("AddBtn"));
        list->setTag(QStringLiteral("AddListBtn"));
        fav->setToolTip(tr("Add this URL to Favorites - Drop on Favorites"));
        list->setToolTip(QStringLiteral("Add this URL to Favorite List - Drop on Favorite List"));
        fav->setAccessibleName(tr("Add page %1 to Favorites").arg(row + 1));
        list->setAccessibleName(tr("Add page %1 to a Favorite List").arg(row + 1));
        nameRow(button, row, QString());
        m_button[size_t(row)] = button;
        m_addFav[size_t(row)] = fav;
        m_addList[size_t(row)] = list;
        button->hide();
        fav->hide();
        list->hide();
        connect(button, &GradientButton::clicked, this, [this, row] { emit rowClicked(row); });
        // The mouse drags the page to where it goes; the keyboard (or a screen reader's press)
        // cannot carry it, so it sends the page to the place chosen in the tree.
        connect(fav, &GradientButton::pressed, this, [this, fav, row] {
            if (fav->pressedByMouse())
                emit addFavPressed(row);
            else
                emit addFavChosen(row);
        });
        connect(list, &GradientButton::pressed, this, [this, list, row] {
            if (list->pressedByMouse())
                emit addListPressed(row);
            else
                emit addListChosen(row);
        });
    }
    setAllRowsNormal();
}

void SurfRows::setRowNormal(int row)
{
    if (!isRow(row))
        return;
    const Globals& g = globals();
    Button(row)->setColors(g.ButtonBackColor, g.ButtonTextColor, g.ButtonEndColor);
    Button(row)->setValue(false);
}

void SurfRows::setRowActive(int row)
{
    if (!isRow(row))
        return;
    const Globals& g = globals();
    Button(row)->setColors(g.ButtonTextColor, kPureBlue, g.ButtonEndColor);
    Button(row)->setValue(true);
}

void SurfRows::setAllRowsNormal()
{
    for (int row = 0; row < kRows; ++row)
        setRowNormal(row);
}

void SurfRows::hideRow(int row)
{
    if (!isRow(row))
        return;
    Button(row)->hide();
    nameRow(Button(row), row, QString());
    AddFavBtn(row)->hide();
    AddListBtn(row)->hide();
}

void SurfRows::showRow(int row, bool small)
{
    if (!isRow(row))
        return;
    Button(row)->show();
    AddFavBtn(row)->show();
    if (!small)
        AddListBtn(row)->show();
}

void SurfRows::setSmall(bool small, int openRows)
{
    if (small) {
        for (GradientButton* list : m_addList)
            list->hide();
        return;
    }
    // Rows are shown by count: the open slots are taken to be the lowest ones.
    for (int row = 0; row < kRows && row < openRows; ++row) {
        AddFavBtn(row)->show();
        AddListBtn(row)->show();
    }
}

int SurfRows::arrange(int formWidthTwips, int rowHeightTwips, bool small)
{
    const int h = rowHeightTwips;
    const int width = formWidthTwips - kRowMargin - h;
    for (int row = 0; row < kRows; ++row) {
        const int top = kFirstRowTop + row * h;
        Button(row)->setGeometry(twipsRect(kRowLeft, top, width, h));
        // The add buttons share a square of the row's height at the row's right end.
        if (small) {
            AddFavBtn(row)->setGeometry(twipsRect(kRowLeft + width, top, h, h));
        } else {
            AddFavBtn(row)->setGeometry(twipsRect(kRowLeft + width, top, h, h / 2));
            AddListBtn(row)->setGeometry(twipsRect(kRowLeft + width, top + h / 2, h, h - h / 2));
        }
    }
    return width + h;
}

void SurfRows::showNavigating(int slot, const QString& address)
{
    if (!isRow(slot - 1))
        return;
    const Globals& g = globals();
    GradientButton* row = Button(slot - 1);
    row->setText(address);
    nameRow(row, slot - 1, tr("loading %1").arg(address));
    row->setValue(true);
    row->setBackColor(g.ButtonTextColor);
    row->setTextColor(kPureBlue);
    row->setTag(address);
    row->update();
}

void SurfRows::showCompleted(int slot, const QString& url, const QString& title)
{
    if (!isRow(slot - 1))
        return;
    GradientButton* row = Button(slot - 1);
    row->setTag(url);
    row->setToolTip(url);
    row->setText(title);
    nameRow(row, slot - 1, title.isEmpty() ? url : title);
}

void SurfRows::showTitle(int slot, const QString& title)
{
    if (!isRow(slot - 1))
        return;
    GradientButton* row = Button(slot - 1);
    row->setText(title);
    nameRow(row, slot - 1, title.isEmpty() ? row->tag() : title);
    row->update();
}
