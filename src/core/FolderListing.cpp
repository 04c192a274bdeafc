#include "core/FolderListing.h"

#include "platform/Platform.h"

namespace orvane {

bool FolderListing::matches(const QString& name, const QString& query) {
    return query.isEmpty() || name.contains(query, Qt::CaseInsensitive);
}

bool FolderListing::read(const QString& folder, bool showHidden, const QString& query,
                         std::vector<Entry>& out, QString& error) {
    const size_t before = out.size();
    const bool ok = Platform::instance().listFolder(
        folder, showHidden,
        [&](RawItem&& item) {
            if (matches(item.name, query)) out.push_back(Entry::fromRaw(folder, std::move(item)));
        },
        error);
    if (!ok) out.resize(before);
    // Growth by doubling leaves up to half the array unused; a listing is kept as long as it is shown.
    out.shrink_to_fit();
    return ok;
}

} // namespace orvane
