#include "PageSettingsStore.h"

#include "ListsModel.h"
#include "watch/EventLog.h"

PageSettingsStore::PageSettingsStore(ListsModel* lists, QObject* parent) : QObject(parent), m_lists(lists)
{
    // The lists are read at start and whenever their file is read again: the settings with them.
    connect(lists, &ListsModel::reset, this, &PageSettingsStore::reload);
    connect(lists, &ListsModel::listRenamed, this, &PageSettingsStore::listRenamed);
}

qsizetype PageSettingsStore::find(const QString& list, const QString& address) const
{
    const QString upper = list.toUpper();
    for (qsizetype i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].address == address && m_entries[i].list.toUpper() == upper)
            return i;
    return -1;
}

PageSettings PageSettingsStore::of(const QString& list, const QString& address) const
{
    const qsizetype at = find(list, address);
    return at < 0 ? PageSettings() : m_entries[at].settings;
}

RunError PageSettingsStore::set(const QString& list, const QString& address, const PageSettings& settings)
{
    const PageSettings wanted = settings.bounded();
    const qsizetype at = find(list, address);
    if (at < 0 && wanted.isEmpty())
        return RunError::None;
    if (at >= 0 && m_entries[at].settings == wanted)
        return RunError::None;
    if (wanted.isEmpty())
        m_entries.removeAt(at);
    else if (at >= 0)
        m_entries[at].settings = wanted;
    else
        m_entries.append({list, address, wanted});
    const RunError error = save();
    emit changed(list, address);
    return error;
}

void PageSettingsStore::reload()
{
    const QList<ListPagesFile::Entry> stored = ListPagesFile::read(ListPagesFile::path());
    const QStringList lists = m_lists->names();
    QList<ListPagesFile::Entry> kept;
    for (const ListPagesFile::Entry& entry : stored) {
        const QList<ListPageState> pages = m_lists->pages(entry.list.toUpper());
        bool held = false;
        for (const ListPageState& page : pages)
            held = held || page.address == entry.address;
        // Lists that could not be read at all leave every setting where it is.
        if (held || lists.isEmpty())
            kept.append(entry);
    }
    m_entries = kept;
    if (kept.size() != stored.size()) {
        EventLog::write(QStringLiteral("settings of %1 pages no longer in their lists left out")
                            .arg(stored.size() - kept.size()));
        save();
    }
    emit changed(QString(), QString());
}

void PageSettingsStore::listRenamed(const QString& oldName, const QString& newName)
{
    bool any = false;
    for (ListPagesFile::Entry& entry : m_entries) {
        if (entry.list.toUpper() == oldName.toUpper()) {
            entry.list = newName;
            any = true;
        }
    }
    if (!any)
        return;
    save();
    emit changed(newName, QString());
}

RunError PageSettingsStore::save()
{
    const RunError error = ListPagesFile::write(ListPagesFile::path(), m_entries);
    if (error)
        EventLog::write(QStringLiteral("the page settings could not be saved to %1: %2")
                            .arg(ListPagesFile::path(), error.text()));
    return error;
}
