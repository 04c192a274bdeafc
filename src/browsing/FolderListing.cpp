#include "browsing/FolderListing.h"

#include "platform/Platform.h"

namespace orvane {

bool FolderListing::matches(const QString& name, const QString& query) {
    return query.isEmpty() || name.contains(query, Qt::CaseInsensitive);
}

bool FolderListing::read(const QString& folder, bool showHidden, const QString& query, std::vector<Entry>& out,
                         QString& error) {
    std::vector<RawItem> items;
    if (!Platform::instance().listFolder(folder, showHidden, items, error))
        return false;
    out.reserve(out.size() + items.size());
    for (RawItem& item : items) {
        if (matches(item.name, query))
            out.push_back(Entry::fromRaw(folder, std::move(item)));
    }
    return true;
}

} // namespace orvane
