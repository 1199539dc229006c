#pragma once

#include "RunError.h"

// Shows the failure of a data file save: "Save Error - <number> - <text>".
void showSaveError(const RunError& error);
