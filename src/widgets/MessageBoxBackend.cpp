#include "MessageBoxBackend.h"

#include <QApplication>
#include <QColorDialog>
#include <QMessageBox>

void MessageBoxBackend::showMessage(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, title, text, QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}

DialogService::Answer MessageBoxBackend::askQuestion(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
                    QApplication::activeWindow());
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes ? DialogService::Answer::Yes : DialogService::Answer::No;
}

std::optional<QColor> MessageBoxBackend::chooseColor(const QString& title, const QColor& initial)
{
    const QColor chosen = QColorDialog::getColor(initial, QApplication::activeWindow(), title);
    if (!chosen.isValid())
        return std::nullopt;
    return chosen;
}
