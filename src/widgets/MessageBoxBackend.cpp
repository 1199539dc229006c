#include "MessageBoxBackend.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

#include "WindowPlacement.h"

namespace {
// A box belongs to the program window that asks (a dialog of the program in front, else the main
// window), so that it comes up in front of it, never behind the main window kept on top.
QWidget* ownerOfBoxes()
{
    QWidget* main = programMainWindow();
    QWidget* active = QApplication::activeModalWidget();
    if (!active)
        active = QApplication::activeWindow();
    for (QWidget* w = active; w; w = w->parentWidget())
        if (w == main)
            return active->window();
    return main ? main : active;
}

void showInFront(QDialog& box)
{
    keepAboveOwner(&box, box.parentWidget());
}
} // namespace

void MessageBoxBackend::showMessage(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, ownerOfBoxes());
    showInFront(box);
    box.exec();
}

DialogService::Answer MessageBoxBackend::askQuestion(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No, ownerOfBoxes());
    showInFront(box);
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes ? DialogService::Answer::Yes : DialogService::Answer::No;
}

std::optional<QColor> MessageBoxBackend::chooseColor(const QString& title, const QColor& initial)
{
    QColorDialog dialog(initial, ownerOfBoxes());
    dialog.setWindowTitle(title);
    showInFront(dialog);
    if (dialog.exec() != QDialog::Accepted || !dialog.selectedColor().isValid())
        return std::nullopt;
    return dialog.selectedColor();
}

std::optional<DialogService::FileChoice> MessageBoxBackend::chooseFile(const QString& caption, const QString& start,
                                                                       const QStringList& filters, DialogService::FileUse use)
{
    const bool saving = use != DialogService::FileUse::Open;
    QFileDialog dialog(ownerOfBoxes(), caption);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, use == DialogService::FileUse::Share);
    if (use == DialogService::FileUse::Share)
        dialog.setLabelText(QFileDialog::Accept, QObject::tr("Choose")); // nothing is saved over it
    dialog.setNameFilters(filters);
    dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    const QFileInfo where(start);
    if (where.isDir()) {
        dialog.setDirectory(start);
    } else {
        dialog.setDirectory(where.absolutePath());
        dialog.selectFile(where.fileName());
    }
    showInFront(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return DialogService::FileChoice{dialog.selectedFiles().constFirst(),
                                     int(std::max<qsizetype>(0, filters.indexOf(dialog.selectedNameFilter())))};
}

std::optional<int> MessageBoxBackend::chooseItem(const QString& caption, const QString& label, const QStringList& items)
{
    QInputDialog dialog(ownerOfBoxes());
    dialog.setWindowTitle(caption);
    dialog.setLabelText(label);
    dialog.setComboBoxItems(items);
    dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
    showInFront(dialog);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const qsizetype index = items.indexOf(dialog.textValue());
    return index < 0 ? std::nullopt : std::optional<int>(int(index));
}
