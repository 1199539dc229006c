#include "ColorSwatch.h"

#include "core/DialogService.h"
#include "core/StoredColor.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPen>

ColorSwatch::ColorSwatch(const QString& name, const QString& toolTip, QWidget* parent) : QLineEdit(parent)
{
    setObjectName(name);
    setToolTip(toolTip);
    setAccessibleName(toolTip.simplified());
    setReadOnly(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(20);
}

void ColorSwatch::setValue(int32_t value)
{
    m_value = value;
    update();
}

void ColorSwatch::mouseDoubleClickEvent(QMouseEvent*)
{
    chooseColor();
}

void ColorSwatch::chooseColor()
{
    const QColor shown = StoredColor::resolve(m_value, palette());
    if (const auto chosen = DialogService::chooseColor(shown.isValid() ? shown : QColor(Qt::white)))
        setValue(StoredColor::fromColor(*chosen));
}

void ColorSwatch::keyPressEvent(QKeyEvent* event)
{
    // Keys choose nothing here; Enter and Space open the dialog, as a double click does.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        chooseColor();
        return;
    }
    event->ignore();
}

void ColorSwatch::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QColor shown = StoredColor::resolve(m_value, palette());
    p.fillRect(rect(), shown.isValid() ? shown : palette().color(QPalette::Base));
    if (!hasFocus()) {
        p.setPen(palette().color(QPalette::Mid));
        p.drawRect(rect().adjusted(0, 0, -1, -1));
        return;
    }
    // The keyboard's place, seen on any colour the swatch may show: a band of the highlight
    // colour with a line of the base colour inside it.
    p.setPen(QPen(palette().color(QPalette::Highlight), 2));
    p.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    p.setPen(palette().color(QPalette::Base));
    p.drawRect(rect().adjusted(2, 2, -3, -3));
}
