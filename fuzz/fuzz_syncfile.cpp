#include "bookmarks/SyncFile.h"

#include <cstdlib>

// Any bytes, as a synced folder may hold from another machine: a file is taken whole or not at all,
// what is taken is a whole tree (every entry in a folder there is, none inside itself), and the
// file written for it is read back as the same tree.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const SyncFile::Read read = SyncFile::read(bytes);
    if (!read.ok() && !read.tree.isEmpty())
        std::abort();
    if (!read.ok())
        return 0;
    if (!TreeMerge::isWhole(read.tree))
        std::abort();
    const SyncFile::Read again = SyncFile::read(SyncFile::write(read.tree, read.machine));
    if (!again.ok() || again.tree != read.tree)
        std::abort();
    return 0;
}
