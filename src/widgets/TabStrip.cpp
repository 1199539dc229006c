#include "TabStrip.h"

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
        // Narrow side padding: five captions fit the program's narrow default window.
        setStyleSheet(QStringLiteral("QTabBar::tab { padding: 4px 1px; min-width: 0px; }"));
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
