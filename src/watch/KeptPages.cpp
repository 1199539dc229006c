#include "KeptPages.h"

void KeptPages::start(int pageCount, bool keep, bool severalWindows)
{
    // With one window, or more pages than windows, a run loads every page as it always has.
    m_active = keep && severalWindows && pageCount > 0 && pageCount <= kMostPages;
    m_pages = QList<Page>(m_active ? pageCount : 0);
}

int KeptPages::keptSlot(int position, const QString& url, const std::function<QString(int slot)>& slotUrl) const
{
    if (!m_active || position < 0 || position >= m_pages.size())
        return 0;
    const int slot = m_pages[position].slot;
    if (slot < 1 || slot > kMostPages || slotUrl(slot) != url)
        return 0; // never loaded, or its window went elsewhere or was closed
    for (int other = 0; other < m_pages.size(); ++other)
        if (other != position && m_pages[other].slot == slot)
            return 0; // two pages share that window: it does not hold this one for itself
    return slot;
}

void KeptPages::loaded(int position, int slot, double now)
{
    if (!m_active || position < 0 || position >= m_pages.size())
        return;
    m_pages[position] = Page{slot, now};
}

bool KeptPages::reloadDue(int position, double now, double reloadSeconds) const
{
    if (!m_active || reloadSeconds <= 0 || position < 0 || position >= m_pages.size())
        return false;
    return now - m_pages[position].loadedAt >= reloadSeconds;
}
