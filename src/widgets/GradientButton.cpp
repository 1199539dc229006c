#include "GradientButton.h"

#include "ControlDrag.h"
#include "core/StoredColor.h"

#include <QDropEvent>

#include <QLinearGradient>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>

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

void GradientButton::mousePressEvent(QMouseEvent* event)
{
    m_pressedByMouse = true;
    QPushButton::mousePressEvent(event);
    m_pressedByMouse = false;
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

    QRect textRect = r.adjusted(4 + m_leftInset, 1, -4, -1);
    if (sunken)
        textRect.translate(1, 1);
    if (!icon().isNull()) {
        const QRect iconRect = pictureRect();
        // The picture lies on a light plate of its own: seen on any button colours, the darkest
        // gradient included.
        p.save();
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(palette().color(QPalette::Dark));
        p.setBrush(pictureBackground());
        p.drawRoundedRect(QRectF(iconRect.adjusted(-3, -2, 3, 2)).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        p.restore();
        icon().paint(&p, iconRect, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        textRect.setLeft(iconRect.right() + 6);
    }
    p.setFont(font());
    const QString caption = elidedCaption(textRect.width());
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

namespace {
// No character that is drawn is narrower than a pixel, so a caption's first `width` + 1 characters
// are all that can ever be shown in `width` pixels: the rest is never measured.
QString visiblePart(const QString& text, int width)
{
    qsizetype length = std::max(width, 0) + 1;
    if (text.size() <= length)
        return text;
    if (text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length) + QChar(0x2026); // it goes on: the ellipsis shows it
}

// A size hint measures no more of a caption than a screen could show.
constexpr int kHintCharacters = 512;
} // namespace

QRect GradientButton::pictureRect() const
{
    QRect area = rect().adjusted(4, 1, -4, -1);
    if (isDown() || isChecked())
        area.translate(1, 1);
    const QSize size = iconSize();
    // A picture without a caption sits in the middle; with one, at the left before it.
    const int left = text().isEmpty() ? area.center().x() - size.width() / 2 + 1 : area.left() + 3;
    return QRect(left, area.center().y() - size.height() / 2 + 1, size.width(), size.height());
}

QColor GradientButton::pictureBackground() const
{
    return palette().color(QPalette::Light);
}

QString GradientButton::elidedCaption(int width) const
{
    // Eliding measures the caption: done once per change of caption, font or width, not at
    // every paint.
    const QString caption = text();
    if (caption.constData() != m_elidedFor.constData() || caption.size() != m_elidedFor.size() ||
        width != m_elidedWidth || font() != m_elidedFont) {
        m_elidedFor = caption;
        m_elidedWidth = width;
        m_elidedFont = font();
        m_elided = fontMetrics().elidedText(visiblePart(caption, width), Qt::ElideRight, width);
    }
    return m_elided;
}

QSize GradientButton::sizeHint() const
{
    const QString caption = text();
    if (caption.size() <= kHintCharacters)
        return QPushButton::sizeHint();
    // As the push button measures itself, over the part of the caption that can be seen.
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = visiblePart(caption, kHintCharacters);
    QSize content = fontMetrics().size(Qt::TextShowMnemonic, option.text);
    if (!icon().isNull()) {
        content.rwidth() += iconSize().width() + 4;
        content.setHeight(std::max(content.height(), iconSize().height()));
    }
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, content, this);
}

QSize GradientButton::minimumSizeHint() const
{
    return text().size() <= kHintCharacters ? QPushButton::minimumSizeHint() : sizeHint();
}

void GradientButton::setLeftInset(int pixels)
{
    if (m_leftInset == pixels)
        return;
    m_leftInset = pixels;
    update();
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
