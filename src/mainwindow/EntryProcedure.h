#pragma once

#include <memory>

class Vantrel1;

// The program's entry: defaults, program folder and data files, then the main window loaded and
// shown. The caller keeps the window until it has unloaded.
std::unique_ptr<Vantrel1> RunEntryProcedure();
