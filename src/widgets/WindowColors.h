#pragma once

#include <QColor>
#include <cstdint>

class QPalette;
class QWidget;

// How the program paints its windows with the stored window colours (0x00BBGGRR, or a system
// colour by index), the bold option and the text style.
namespace WindowColors {

// The colour a stored value stands for now; invalid when it names none (the control keeps its own).
QColor resolved(int32_t value);
void setBold(QWidget* widget, bool bold);
// A panel's background: a gradient from the start to the end colour when it has one.
void paintPanel(QWidget* panel, int32_t back, int32_t text, const int32_t* end);
void paintText(QWidget* widget, int32_t text);
void paintList(QWidget* list, int32_t back, int32_t text);

} // namespace WindowColors

// Paints a dialog of the program (the run dialog, the about box) with the window colours, the
// button colours, the bold option and the text style, as it comes forward.
void applyDialogColors(QWidget* dialog);
