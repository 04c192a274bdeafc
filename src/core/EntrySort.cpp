#include "core/EntrySort.h"

#include "core/EntryText.h"
#include "core/NaturalOrder.h"

#include <QHash>
#include <algorithm>
#include <limits>
#include <numeric>

namespace orvane {

namespace {

enum class Key { Name, Modified, Kind, Size, Created, Folder, Origin, Deleted };

Key keyOf(const QString& key) {
    if (key == QLatin1String("folder")) return Key::Folder;
    if (key == QLatin1String("origin")) return Key::Origin;
    if (key == QLatin1String("deleted")) return Key::Deleted;
    switch (sortKeys().indexOf(key)) {
    case 1:
        return Key::Modified;
    case 2:
        return Key::Kind;
    case 3:
        return Key::Size;
    case 4:
        return Key::Created;
    default:
        return Key::Name;
    }
}

// An absent date counts as the distant past.
qint64 stamp(const QDateTime& date) {
    return date.isValid() ? date.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

qint64 valueOf(const Entry& e, Key key) {
    switch (key) {
    case Key::Size:
        return e.size;
    case Key::Modified:
        return stamp(e.modified);
    case Key::Created:
        return stamp(e.created);
    default:
        return stamp(e.added);
    }
}

template <typename T> int threeWay(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

int sign(int v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

// Ranks the distinct kinds in natural order; kinds that compare equal share a rank.
std::vector<int> kindRanks(const std::vector<Entry>& entries) {
    QHash<QString, int> rankOf;
    for (const Entry& e : entries)
        rankOf.insert(e.kind, 0);
    QStringList kinds = rankOf.keys();
    const NaturalOrder& order = NaturalOrder::shared();
    std::sort(kinds.begin(), kinds.end(),
              [&](const QString& a, const QString& b) { return order.compare(a, b) < 0; });
    int rank = 0;
    for (qsizetype i = 0; i < kinds.size(); ++i) {
        if (i > 0 && order.compare(kinds[i - 1], kinds[i]) != 0) ++rank;
        rankOf[kinds[i]] = rank;
    }
    std::vector<int> ranks;
    ranks.reserve(entries.size());
    for (const Entry& e : entries)
        ranks.push_back(rankOf.value(e.kind));
    return ranks;
}

struct SortKeys {
    std::vector<QCollatorSortKey> names;
    std::vector<int> kinds;
    std::vector<qint64> values; // size or date, when the key is one of those
    std::vector<QCollatorSortKey> folders;
};

SortKeys buildKeys(const std::vector<Entry>& entries, Key key, bool group) {
    SortKeys keys;
    const NaturalOrder& order = NaturalOrder::shared();
    keys.names.reserve(entries.size());
    for (const Entry& e : entries)
        keys.names.push_back(order.key(e.name()));
    if (group || key == Key::Kind) keys.kinds = kindRanks(entries);
    if (key == Key::Folder || key == Key::Origin)
        for (const Entry& e : entries)
            keys.folders.push_back(order.key(key == Key::Folder ? folderOf(e) : originFolderOf(e)));
    if (key == Key::Size || key == Key::Modified || key == Key::Created || key == Key::Deleted) {
        keys.values.reserve(entries.size());
        for (const Entry& e : entries)
            keys.values.push_back(valueOf(e, key));
    }
    return keys;
}

// Moves entries into the given order in place, cycle by cycle, so no second array is needed.
void applyOrder(std::vector<Entry>& entries, std::vector<size_t>& order) {
    for (size_t start = 0; start < order.size(); ++start) {
        if (order[start] == start) continue;
        Entry held = std::move(entries[start]);
        size_t at = start;
        while (order[at] != start) {
            const size_t from = order[at];
            entries[at] = std::move(entries[from]);
            order[at] = at;
            at = from;
        }
        entries[at] = std::move(held);
        order[at] = at;
    }
}

} // namespace

void sortEntries(std::vector<Entry>& entries, const SortState& state) {
    const Key key = keyOf(state.key);
    const SortKeys keys = buildKeys(entries, key, state.groupByType);
    std::vector<size_t> order(entries.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        if (state.groupByType && keys.kinds[a] != keys.kinds[b]) return keys.kinds[a] < keys.kinds[b];
        int v = 0;
        if (key == Key::Kind)
            v = threeWay(keys.kinds[a], keys.kinds[b]);
        else if (!keys.values.empty())
            v = threeWay(keys.values[a], keys.values[b]);
        else if (!keys.folders.empty())
            v = sign(keys.folders[a].compare(keys.folders[b]));
        if (v == 0) v = sign(keys.names[a].compare(keys.names[b]));
        if (v == 0) v = sign(QString::compare(entries[a].location, entries[b].location));
        return state.ascending ? v < 0 : v > 0;
    });
    applyOrder(entries, order);
}

bool entryBefore(const Entry& lhs, const Entry& rhs, const SortState& state) {
    const NaturalOrder& order = NaturalOrder::shared();
    if (state.groupByType && lhs.kind != rhs.kind) return order.compare(lhs.kind, rhs.kind) < 0;
    int v = 0;
    const Key key = keyOf(state.key);
    switch (key) {
    case Key::Size:
    case Key::Created:
    case Key::Modified:
    case Key::Deleted:
        v = threeWay(valueOf(lhs, key), valueOf(rhs, key));
        break;
    case Key::Kind:
        v = order.compare(lhs.kind, rhs.kind);
        break;
    case Key::Name:
        v = order.compare(lhs.name(), rhs.name());
        break;
    case Key::Folder:
        v = order.compare(folderOf(lhs), folderOf(rhs));
        break;
    case Key::Origin:
        v = order.compare(originFolderOf(lhs), originFolderOf(rhs));
        break;
    }
    if (v == 0) v = order.compare(lhs.name(), rhs.name());
    if (v == 0) v = sign(QString::compare(lhs.location, rhs.location));
    return state.ascending ? v < 0 : v > 0;
}

} // namespace orvane
