#pragma once

#include "core/Entry.h"

#include <vector>

namespace orvane {

// The window's sort state; shared by all tabs of a window.
struct SortState {
    // "name", "modified", "kind", "size", "created"; "folder" while search results show; "origin" and
    // "deleted" in the Trash
    QString key = QStringLiteral("name");
    bool ascending = true;
    bool groupByType = false;
};

inline const QStringList& sortKeys() {
    static const QStringList keys = {QStringLiteral("name"), QStringLiteral("modified"),
                                     QStringLiteral("kind"), QStringLiteral("size"),
                                     QStringLiteral("created")};
    return keys;
}

// Sorts with keys computed once per entry; folders and files mix, only grouping by type gathers them.
void sortEntries(std::vector<Entry>& entries, const SortState& state);

// The same order for one pair; for lists too short to be worth the keys.
bool entryBefore(const Entry& lhs, const Entry& rhs, const SortState& state);

} // namespace orvane
