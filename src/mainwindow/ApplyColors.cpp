// Vantrel1::ApplyColors: every control of the main window painted with the window colours, with
// bold text where the option asks for it and the chosen text style on the program's buttons.
#include "options/OptionsPanel.h"
#include "surf/SurfPanel.h"
#include "Vantrel1.h"
#include "core/Globals.h"
#include "core/StoredColor.h"
#include "widgets/GradientButton.h"
#include "widgets/WindowColors.h"
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

using namespace WindowColors;


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

