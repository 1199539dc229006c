#include "SaveError.h"

#include "DialogService.h"

void showSaveError(const RunError& error)
{
    DialogService::message(QStringLiteral("Save Error - ") + error.numberAndText());
}
