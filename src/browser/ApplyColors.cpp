// Vantrel1::ApplyColors: every control of the main window painted with the window colours, with
// bold text where the option asks for it and the chosen text style on the program's buttons.
#include "OptionsPanel.h"
#include "SurfPanel.h"
#include "Vantrel1.h"
#include "core/Globals.h"
#include "core/StoredColor.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/TabStrip.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>

namespace {

// The colour a stored value stands for now; invalid when it names none (the control keeps its own).
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

void setRole(QPalette& palette, QPalette::ColorRole role, const QColor& color)
{
    if (color.isValid()) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
    }
}

// A panel's background: a gradient from the start to the end colour when it has one.
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

} // namespace

void Vantrel1::ApplyColors()
{
    const Globals& g = globals();
    const bool bold = g.OptBold;
    const int style = g.FontType;

    paintPanel(this, g.WindowBackColor, g.WindowTextColor, nullptr);

    static_cast<TabStrip*>(m_tabStrip)->setTabColors(resolved(g.TabBackColor), resolved(g.TabTextColor), bold);
    setBold(m_tabStrip, bold);

    m_surf->setCalendarColors(resolved(g.ListBackColor), resolved(g.ListTextColor));

    // Every program button: the rows, the quick buttons, the command buttons, the rows' add buttons.
    for (GradientButton* button : findChildren<GradientButton*>()) {
        button->setColors(g.ButtonBackColor, g.ButtonTextColor, g.ButtonEndColor);
        button->setTextStyle(style);
        button->setValue(button->isTwoState() ? button->value() : false); // rows lose their active look
        setBold(button, bold);
    }

    static const QRegularExpression frames(QStringLiteral("^Frame[1-7]$"));
    for (QWidget* frame : findChildren<QWidget*>(frames))
        paintPanel(frame, g.WindowBackColor, g.WindowTextColor, &g.WindowEndColor);
    // The captions of the options' and the calendar's frames follow the bold option.
    for (const char* name : {"Frame6", "Frame7"})
        for (QWidget* frame : findChildren<QWidget*>(QString::fromLatin1(name)))
            setBold(frame, bold);
    // The distribute button is a line of the window, not a command: it takes the window colours.
    for (GradientButton* hint : findChildren<GradientButton*>(QStringLiteral("DistFavBtn")))
        hint->setColors(g.WindowBackColor, g.WindowTextColor, g.WindowEndColor);
    for (QWidget* commands : findChildren<QWidget*>(QStringLiteral("OptionsCommands")))
        paintPanel(commands, g.WindowBackColor, g.WindowTextColor, &g.WindowEndColor);
    for (QWidget* frame : findChildren<QWidget*>(QStringLiteral("Frame8")))
        paintPanel(frame, g.WindowBackColor, g.WindowTextColor, nullptr);
    for (const char* name : {"Label1", "Label2"})
        for (QWidget* label : findChildren<QWidget*>(QString::fromLatin1(name))) {
            paintPanel(label, g.WindowBackColor, g.WindowTextColor, nullptr);
            setBold(label, bold);
        }
    for (KeyedTree* tree : findChildren<KeyedTree*>()) {
        paintList(tree, g.ListBackColor, g.ListTextColor);
        setBold(tree, bold);
    }
    for (int i = 0; i < 2; ++i)
        setBold(m_options->Text2(i), bold);
    for (int i = 0; i < 5; ++i) {
        paintText(m_options->RDTYPE(i), g.WindowTextColor);
        setBold(m_options->RDTYPE(i), bold);
    }
    for (QWidget* box : findChildren<QGroupBox*>(QStringLiteral("SSFrame1"))) {
        paintText(box, g.WindowTextColor);
        setBold(box, bold);
    }
    // The check boxes let the window's background show through their whole row.
    for (QCheckBox* box : {m_options->CHKBOLD(), m_options->CHKSTARTURL(), m_options->CHKLIST(),
                           m_options->CHKTHEATER(), m_options->CHKTOP()}) {
        box->setAutoFillBackground(false);
        paintText(box, g.WindowTextColor);
        setBold(box, bold);
    }
}

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
