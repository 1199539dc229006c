#include "RunPages.h"

void RunPages::setPages(const QStringList& addresses, const QList<PageSettings>& settings)
{
    QList<Page> pages;
    for (qsizetype i = 0; i < addresses.size(); ++i) {
        Page page{addresses[i], settings.value(i), 0, 0};
        // A page still in the run keeps what is known of its window.
        if (i < m_pages.size() && m_pages[i].address == addresses[i]) {
            page.slot = m_pages[i].slot;
            page.loadedAt = m_pages[i].loadedAt;
        }
        pages.append(page);
    }
    m_pages = pages;
}

QString RunPages::address(int position) const
{
    return position >= 0 && position < count() ? m_pages[position].address : QString();
}

PageSettings RunPages::settingsAt(int position) const
{
    return position >= 0 && position < count() ? m_pages[position].settings : PageSettings();
}

ListRun::PageRule RunPages::ruleAt(int position) const
{
    const PageSettings s = settingsAt(position);
    return {s.seconds, s.skip};
}

void RunPages::loaded(int position, int slot, double now)
{
    if (position < 0 || position >= count())
        return;
    m_pages[position].slot = slot;
    m_pages[position].loadedAt = now;
}

int RunPages::slotOf(int position) const
{
    return position >= 0 && position < count() ? m_pages[position].slot : 0;
}

bool RunPages::reloadAsShown(int position, double now, int runMinutes) const
{
    if (position < 0 || position >= count())
        return false;
    const Page& page = m_pages[position];
    switch (page.settings.reload) {
    case PageSettings::Reload::EachShow:
        return true;
    case PageSettings::Reload::Never:
        return false;
    case PageSettings::Reload::EveryMinutes:
        return now - page.loadedAt >= 60.0 * page.settings.reloadMinutes;
    case PageSettings::Reload::AsTheRun:
        break;
    }
    return runMinutes > 0 && now - page.loadedAt >= 60.0 * runMinutes;
}

bool RunPages::reloadWhileShown(int position, double now) const
{
    if (position < 0 || position >= count())
        return false;
    const Page& page = m_pages[position];
    return page.settings.reload == PageSettings::Reload::EveryMinutes && page.slot > 0 &&
           now - page.loadedAt >= 60.0 * page.settings.reloadMinutes;
}
