// The verbs that change the Favorites folder.
#include "Verbs.h"

#include "FavoritesModel.h"
#include "core/WebAddress.h"
#include "shortcuts/FreedesktopTrash.h"
#include "shortcuts/ShortcutFile.h"

VerbResult Verbs::trashFavorite(const QString& key)
{
    const FavoritesModel::Entry* entry = m_favorites->find(key);
    if (!entry)
        return VerbResult::failed(VerbResult::NoSuchPage, key);
    const QString path = entry->path;
    if (!FreedesktopTrash::sendToTrash(path))
        return VerbResult::failed(VerbResult::NotTrashed, path);
    m_favorites->remove(key);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::moveFavorite(const QString& key, const QString& address)
{
    const FavoritesModel::Entry* entry = m_favorites->find(key);
    if (!entry || entry->folder)
        return VerbResult::failed(VerbResult::NoSuchPage, key);
    if (!WebAddress::isWebAddress(address))
        return VerbResult::failed(VerbResult::NotAWebAddress, address);
    if (!RewriteShortcutAddress(entry->path, address))
        return VerbResult::failed(VerbResult::NotSaved, entry->path);
    emit m_favorites->addressChanged(key);
    noteChange();
    return VerbResult::done();
}
