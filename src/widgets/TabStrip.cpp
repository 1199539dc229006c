#include "TabStrip.h"

#include <QColor>
#include <QTabBar>

namespace {

class EvenTabBar : public QTabBar
{
public:
    explicit EvenTabBar(QWidget* parent) : QTabBar(parent)
    {
        setUsesScrollButtons(false);
        setElideMode(Qt::ElideRight);
        setExpanding(true);
        // A drag held over a tab's caption brings that tab forward, so that a page can be carried
        // to a tab that is not in front (a history entry to a list, for one).
        setChangeCurrentOnDrag(true);
        setAcceptDrops(true);
        setTabColors(QColor(), QColor(), false);
    }

    void setTabColors(const QColor& back, const QColor& text, bool bold)
    {
        m_bold = bold;
        // Narrow side padding: five captions fit the program's narrow default window.
        QString sheet = QStringLiteral("QTabBar::tab { padding: 4px 1px; min-width: 0px;");
        if (back.isValid())
            sheet += QStringLiteral(" background: %1; border: 1px solid palette(mid); margin-right: 1px;")
                         .arg(back.name());
        if (text.isValid())
            sheet += QStringLiteral(" color: %1;").arg(text.name());
        // Every caption in the same weight, the selected one too: the bold option decides.
        sheet += bold ? QStringLiteral(" font-weight: bold; }") : QStringLiteral(" font-weight: normal; }");
        setStyleSheet(sheet);
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        // The strip's whole width is shared out in proportion to the captions, so that a long
        // caption ("Favorites") gets the room it needs in the narrow window.
        QSize size = QTabBar::tabSizeHint(index);
        if (count() == 0 || !parentWidget())
            return size;
        QFont font = this->font();
        font.setBold(m_bold);
        const QFontMetrics metrics(font);
        constexpr int kPadding = 6;
        int total = 0;
        for (int i = 0; i < count(); ++i)
            total += metrics.horizontalAdvance(tabText(i)) + kPadding;
        const int own = metrics.horizontalAdvance(tabText(index)) + kPadding;
        size.setWidth(std::max(1, parentWidget()->width() * own / std::max(total, 1)));
        return size;
    }
    QSize minimumTabSizeHint(int index) const override
    {
        QSize size = QTabBar::minimumTabSizeHint(index);
        size.setWidth(std::min(size.width(), tabSizeHint(index).width()));
        return size;
    }

private:
    bool m_bold = false;
};

} // namespace

TabStrip::TabStrip(QWidget* parent) : QTabWidget(parent)
{
    setTabBar(new EvenTabBar(this));
}

void TabStrip::setTabColors(const QColor& back, const QColor& text, bool bold)
{
    static_cast<EvenTabBar*>(tabBar())->setTabColors(back, text, bold);
}
