#include "KeptPages.h"

void KeptPages::start(int pageCount, bool keep, bool severalWindows)
{
    // With one window, or more pages than windows, a run loads every page as it always has.
    m_active = keep && severalWindows && pageCount > 0 && pageCount <= kMostPages;
    m_count = m_active ? pageCount : 0;
}

int KeptPages::keptSlot(int position, const QString& url, const std::function<int(int position)>& slotOf,
                        const std::function<QString(int slot)>& slotUrl) const
{
    if (!m_active || position < 0 || position >= m_count)
        return 0;
    const int slot = slotOf(position);
    if (slot < 1 || slot > kMostPages || slotUrl(slot) != url)
        return 0; // never loaded, or its window went elsewhere or was closed
    for (int other = 0; other < m_count; ++other)
        if (other != position && slotOf(other) == slot)
            return 0; // two pages share that window: it does not hold this one for itself
    return slot;
}
