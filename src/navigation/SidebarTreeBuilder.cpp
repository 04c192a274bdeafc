#include "navigation/SidebarTreeBuilder.h"
#include "platform/NativePath.h"

#include "core/NaturalOrder.h"
#include "platform/Platform.h"

#include <QFile>
#include <QHash>
#include <algorithm>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace orvane {

namespace {

const QString deeperNote = QStringLiteral("Open this folder to browse deeper");
const QString unavailableNote = QStringLiteral("Folder access unavailable");

QString childPath(const QString& parent, const QString& name) {
    return parent.endsWith(u'/') ? parent + name : parent + u'/' + name;
}

// The same directory reached under two paths (a bind mount inside itself) is still a loop.
std::optional<QPair<quint64, quint64>> fileIdentity(const QString& path) {
    struct stat st;
    if (stat(NativePath::encode(path).constData(), &st) != 0) return std::nullopt;
    return qMakePair(quint64(st.st_dev), quint64(st.st_ino));
}

class Builder {
public:
    Builder(const QSet<QString>& expanded, bool showHidden) : expanded(expanded), showHidden(showHidden) {
        for (const QString& path : expanded)
            expandedParents.insert(path.left(qMax<qsizetype>(path.lastIndexOf(u'/'), 1)));
    }

    void append(SidebarPlace place, int depth, int parent, bool mayBeExpanded = true);
    SidebarTreeSnapshot tree;

private:
    std::optional<QStringList> subfolders(const QString& path);
    using FileID = QPair<quint64, quint64>;
    bool isAncestor(const QString& path, const std::optional<FileID>& file) const;

    const QSet<QString>& expanded;
    QSet<QString> expandedParents; // so the children of a folder with none expanded skip the lookup
    const bool showHidden;
    QHash<QString, std::optional<QStringList>> listings;
    QSet<QString> ancestorPaths;
    QSet<FileID> ancestorFiles;
};

// Subfolders sorted by name as a person reads them, hidden ones only where they were asked for.
std::optional<QStringList> Builder::subfolders(const QString& path) {
    auto found = listings.constFind(path);
    if (found != listings.constEnd()) return *found;
    struct Named {
        QString name;
        QCollatorSortKey key;
    };
    std::vector<Named> kept;
    QString error;
    const NaturalOrder& order = NaturalOrder::shared();
    const bool ok = Platform::instance().listSubfolders(
        path,
        [&](QString&& name, bool hidden) {
            if (hidden && !showHidden && !expanded.contains(childPath(path, name))) return;
            QCollatorSortKey key = order.key(name);
            kept.push_back({std::move(name), std::move(key)});
        },
        error);
    std::optional<QStringList> names;
    if (ok) {
        std::sort(kept.begin(), kept.end(),
                  [](const Named& a, const Named& b) { return a.key.compare(b.key) < 0; });
        names.emplace();
        names->reserve(qsizetype(kept.size()));
        for (Named& n : kept)
            names->append(std::move(n.name));
    }
    return *listings.insert(path, std::move(names));
}

bool Builder::isAncestor(const QString& path, const std::optional<FileID>& file) const {
    return ancestorPaths.contains(path) || (file && ancestorFiles.contains(*file));
}

void Builder::append(SidebarPlace place, int depth, int parent, bool mayBeExpanded) {
    const QString path = place.location;
    const bool stop = !mayBeExpanded || place.isSection() || !expanded.contains(path) ||
                      !SidebarTreeBuilder::isExpandable(place);
    const int row = tree.append(std::move(place), depth, parent);
    if (stop) return;
    const std::optional<FileID> file = fileIdentity(path);
    if (isAncestor(path, file)) return;
    if (depth >= SidebarTreeBuilder::maximumDepth) {
        tree.append(SidebarPlace::section(deeperNote, path), depth + 1, row);
        return;
    }
    const std::optional<QStringList> names = subfolders(path);
    if (!names) {
        tree.append(SidebarPlace::section(unavailableNote, path), depth + 1, row);
        return;
    }
    ancestorPaths.insert(path);
    if (file) ancestorFiles.insert(*file);
    static const QString folder = QStringLiteral("folder");
    const bool childrenMayBeExpanded = expandedParents.contains(path);
    for (const QString& name : *names)
        append(SidebarPlace{name, childPath(path, name), folder}, depth + 1, row, childrenMayBeExpanded);
    ancestorPaths.remove(path);
    if (file) ancestorFiles.remove(*file);
}

} // namespace

bool SidebarTreeBuilder::isExpandable(const SidebarPlace& place) {
    return place.isLocal() && !place.isSection() && Platform::instance().isPlainFolder(place.location);
}

SidebarTreeSnapshot SidebarTreeBuilder::build(const QList<SidebarPlace>& roots, const QSet<QString>& expanded,
                                              bool showHidden) {
    Builder builder(expanded, showHidden);
    for (const SidebarPlace& root : roots)
        builder.append(root, 0, -1);
    return std::move(builder.tree);
}

} // namespace orvane
