#pragma once

#include "core/DialogService.h"

// Shows the program's messages and questions as real dialogs: QMessageBox with exactly the
// buttons asked for, QColorDialog for colours,
// QFileDialog for files and QInputDialog for a choice from a list. Dialogs are modal and centred on the active
// window.
class MessageBoxBackend : public DialogService::Backend
{
public:
    void showMessage(const QString& title, const QString& text) override;
    DialogService::Answer askQuestion(const QString& title, const QString& text) override;
    std::optional<QColor> chooseColor(const QString& title, const QColor& initial) override;
    std::optional<DialogService::FileChoice> chooseFile(const QString& caption, const QString& start,
                                                        const QStringList& filters, DialogService::FileUse use) override;
    std::optional<int> chooseItem(const QString& caption, const QString& label, const QStringList& items) override;
};
