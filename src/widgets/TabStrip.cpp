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
        setTabColors(QColor(), QColor());
    }

    void setTabColors(const QColor& back, const QColor& text)
    {
        // Narrow side padding: five captions fit the program's narrow default window.
        QString sheet = QStringLiteral("QTabBar::tab { padding: 4px 1px; min-width: 0px;");
        if (back.isValid())
            sheet += QStringLiteral(" background: %1; border: 1px solid palette(mid); margin-right: 1px;")
                         .arg(back.name());
        if (text.isValid())
            sheet += QStringLiteral(" color: %1;").arg(text.name());
        sheet += QStringLiteral(" } QTabBar::tab:selected { font-weight: bold; }");
        setStyleSheet(sheet);
    }

protected:
    QSize tabSizeHint(int index) const override
    {
        QSize size = QTabBar::tabSizeHint(index);
        if (count() > 0 && parentWidget())
            size.setWidth(parentWidget()->width() / count());
        return size;
    }
    QSize minimumTabSizeHint(int index) const override
    {
        QSize size = QTabBar::minimumTabSizeHint(index);
        size.setWidth(std::min(size.width(), tabSizeHint(index).width()));
        return size;
    }
};

} // namespace

TabStrip::TabStrip(QWidget* parent) : QTabWidget(parent)
{
    setTabBar(new EvenTabBar(this));
}

void TabStrip::setTabColors(const QColor& back, const QColor& text)
{
    static_cast<EvenTabBar*>(tabBar())->setTabColors(back, text);
}
