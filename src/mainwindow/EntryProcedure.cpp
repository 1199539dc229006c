#include "EntryProcedure.h"

#include "Vantrel1.h"
#include "core/Startup.h"

std::unique_ptr<Vantrel1> RunEntryProcedure()
{
    StartUp();
    auto window = std::make_unique<Vantrel1>();
    window->Form_Load();
    window->show();
    return window;
}
