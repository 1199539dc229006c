#include "WindowColors.h"

#include "GradientButton.h"
#include "core/Globals.h"
#include "core/StoredColor.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>

namespace {

void setRole(QPalette& palette, QPalette::ColorRole role, const QColor& color)
{
    if (color.isValid()) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
    }
}

} // namespace

namespace WindowColors {

QColor resolved(int32_t value)
{
    return StoredColor::resolve(value, QApplication::palette());
}

void setBold(QWidget* widget, bool bold)
{
    QFont font = widget->font();
    font.setBold(bold);
    widget->setFont(font);
}

void paintPanel(QWidget* panel, int32_t back, int32_t text, const int32_t* end)
{
    QPalette palette = panel->palette();
    const QColor start = resolved(back);
    if (start.isValid()) {
        QBrush brush(start);
        const QColor stop = end ? resolved(*end) : QColor();
        if (stop.isValid()) {
            QLinearGradient gradient(0, 0, 1, 0);
            gradient.setCoordinateMode(QGradient::ObjectMode);
            gradient.setColorAt(0, start);
            gradient.setColorAt(1, stop);
            brush = QBrush(gradient);
        }
        palette.setBrush(QPalette::Active, QPalette::Window, brush);
        palette.setBrush(QPalette::Inactive, QPalette::Window, brush);
    }
    setRole(palette, QPalette::WindowText, resolved(text));
    panel->setPalette(palette);
    panel->setAutoFillBackground(start.isValid());
}

void paintText(QWidget* widget, int32_t text)
{
    QPalette palette = widget->palette();
    setRole(palette, QPalette::WindowText, resolved(text));
    setRole(palette, QPalette::ButtonText, resolved(text));
    widget->setPalette(palette);
}

void paintList(QWidget* list, int32_t back, int32_t text)
{
    QPalette palette = list->palette();
    setRole(palette, QPalette::Base, resolved(back));
    setRole(palette, QPalette::AlternateBase, resolved(back));
    setRole(palette, QPalette::Window, resolved(back));
    setRole(palette, QPalette::Button, resolved(back));
    setRole(palette, QPalette::Text, resolved(text));
    setRole(palette, QPalette::WindowText, resolved(text));
    setRole(palette, QPalette::ButtonText, resolved(text));
    list->setPalette(palette);
}


} // namespace WindowColors

using namespace WindowColors;

void applyDialogColors(QWidget* dialog)
{
    // The run dialog and the about box take the window colours, the button colours and the bold
    // option each time they come forward.
    const Globals& g = globals();
    paintPanel(dialog, g.WindowBackColor, g.WindowTextColor, &g.WindowEndColor);
    for (GradientButton* button : dialog->findChildren<GradientButton*>()) {
        button->setColors(g.ButtonBackColor, g.ButtonTextColor, g.ButtonEndColor);
        button->setTextStyle(g.FontType);
        setBold(button, g.OptBold);
    }
    for (QWidget* child : dialog->findChildren<QWidget*>()) {
        if (qobject_cast<QLabel*>(child) || qobject_cast<QCheckBox*>(child) || qobject_cast<QFrame*>(child)) {
            paintText(child, g.WindowTextColor);
            setBold(child, g.OptBold);
        }
    }
}
