// The verbs that change the Favorites folder.
#include "Verbs.h"

#include "FavoritesModel.h"
#include "shortcuts/FreedesktopTrash.h"

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
