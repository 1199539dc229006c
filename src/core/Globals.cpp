#include "Globals.h"

#include <memory>

Globals& globals()
{
    static Globals instance;
    return instance;
}

void resetGlobals()
{
    // Built on the heap: the arrays are too large to sit comfortably on the stack.
    auto fresh = std::make_unique<Globals>();
    globals() = std::move(*fresh);
}

QString appFilePath(const QString& name)
{
    return globals().AppPath + u'/' + name;
}
