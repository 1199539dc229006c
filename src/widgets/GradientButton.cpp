#include "GradientButton.h"

#include "ControlDrag.h"
#include "core/StoredColor.h"

#include <QDropEvent>

#include <QLinearGradient>
#include <QPainter>
#include <QStyleOptionButton>

GradientButton::GradientButton(QWidget* parent) : QPushButton(parent)
{
    setCheckable(true); // the state value lives in the checked state
}

GradientButton::GradientButton(const QString& name, const QString& caption, QWidget* parent)
    : GradientButton(parent)
{
    setObjectName(name);
    setText(caption);
}

void GradientButton::setBackColor(int32_t color)
{
    m_backColor = color;
    update();
}

void GradientButton::setTextColor(int32_t color)
{
    m_textColor = color;
    update();
}

void GradientButton::setEndColor(int32_t color)
{
    m_endColor = color;
    update();
}

void GradientButton::setColors(int32_t back, int32_t text, int32_t end)
{
    m_backColor = back;
    m_textColor = text;
    m_endColor = end;
    update();
}

namespace {
// A stored value that names no colour leaves the palette's own colour in place.
QColor resolvedOr(int32_t stored, const QPalette& palette, QPalette::ColorRole fallback)
{
    const QColor c = StoredColor::resolve(stored, palette);
    return c.isValid() ? c : palette.color(fallback);
}
} // namespace

QColor GradientButton::resolvedBackColor() const
{
    return resolvedOr(m_backColor, palette(), QPalette::Button);
}

QColor GradientButton::resolvedTextColor() const
{
    return resolvedOr(m_textColor, palette(), QPalette::ButtonText);
}

QColor GradientButton::resolvedEndColor() const
{
    return resolvedOr(m_endColor, palette(), QPalette::Button);
}

void GradientButton::nextCheckState()
{
    if (m_twoState)
        QPushButton::nextCheckState();
}

void GradientButton::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect r = rect();
    const bool sunken = isDown() || isChecked();

    QLinearGradient gradient(r.topLeft(), r.topRight());
    gradient.setColorAt(0, resolvedBackColor());
    gradient.setColorAt(1, resolvedEndColor());
    p.fillRect(r, gradient);

    // A thin bevel: light above and left when raised, dark there when pressed in.
    const QColor light = palette().color(QPalette::Light);
    const QColor dark = palette().color(QPalette::Dark);
    p.setPen(sunken ? dark : light);
    p.drawLine(r.topLeft(), r.topRight());
    p.drawLine(r.topLeft(), r.bottomLeft());
    p.setPen(sunken ? light : dark);
    p.drawLine(r.bottomLeft(), r.bottomRight());
    p.drawLine(r.topRight(), r.bottomRight());

    QRect textRect = r.adjusted(4, 1, -4, -1);
    if (sunken)
        textRect.translate(1, 1);
    if (!icon().isNull()) {
        const QSize size = iconSize();
        const QRect iconRect(textRect.left(), textRect.center().y() - size.height() / 2, size.width(),
                             size.height());
        icon().paint(&p, iconRect, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        textRect.setLeft(iconRect.right() + 4);
    }
    p.setFont(font());
    const QString caption = fontMetrics().elidedText(text(), Qt::ElideRight, textRect.width());
    const QPoint offset = lightCopyOffset(m_textStyle);
    if (!offset.isNull() && isEnabled()) {
        p.setPen(palette().color(QPalette::Light));
        p.drawText(textRect.translated(offset), Qt::AlignCenter | Qt::TextSingleLine, caption);
    }
    p.setPen(isEnabled() ? resolvedTextColor() : palette().color(QPalette::Disabled, QPalette::ButtonText));
    p.drawText(textRect, Qt::AlignCenter | Qt::TextSingleLine, caption);

    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = r.adjusted(2, 2, -2, -2);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
    }
}

void GradientButton::setTextStyle(int style)
{
    m_textStyle = (style >= Flat && style <= LoweredHeavy) ? style : Flat;
    update();
}

QPoint GradientButton::lightCopyOffset(int style)
{
    switch (style) {
    case RaisedLight:
        return {-1, -1};
    case LoweredLight:
        return {1, 1};
    case RaisedHeavy:
        return {-2, -2};
    case LoweredHeavy:
        return {2, 2};
    default:
        return {0, 0};
    }
}

void GradientButton::setAcceptsControlDrops(bool on)
{
    setAcceptDrops(on);
}

void GradientButton::dragEnterEvent(QDragEnterEvent* event)
{
    if (!ControlDrag::sourceTag(event->mimeData()).isEmpty())
        event->acceptProposedAction();
    else
        event->ignore();
}

void GradientButton::dropEvent(QDropEvent* event)
{
    const QString tag = ControlDrag::sourceTag(event->mimeData());
    if (tag.isEmpty())
        return;
    event->acceptProposedAction();
    emit controlDropped(tag);
}
