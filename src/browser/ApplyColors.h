#pragma once

class QWidget;

// Paints a dialog of the program (the run dialog, the about box) with the window colours, the
// button colours, the bold option and the text style, as it comes forward.
void applyDialogColors(QWidget* dialog);
