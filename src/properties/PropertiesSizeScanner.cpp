#include "properties/PropertiesSizeScanner.h"

#include "platform/NativePath.h"
#include "properties/PropertiesTreeWalk.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSet>
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace orvane {

namespace {

struct Root {
    QByteArray path;
    bool reached = false; // found inside a folder counted before it
};

bool statItem(const QByteArray& path, struct statx& sx) {
    const unsigned mask = STATX_TYPE | STATX_SIZE | STATX_BLOCKS | STATX_INO | STATX_NLINK;
    return statx(AT_FDCWD, path.constData(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &sx) == 0 &&
           (sx.stx_mask & STATX_TYPE);
}

void countFile(const struct statx& sx, PropertiesSizeSummary& summary) {
    ++summary.files;
    if (sx.stx_mask & STATX_SIZE)
        summary.logicalBytes += qint64(sx.stx_size);
    else
        ++summary.unreadable;
    if (sx.stx_mask & STATX_BLOCKS)
        summary.allocatedBytes += qint64(sx.stx_blocks) * 512;
    else
        ++summary.unavailableAllocation;
}

bool isInside(const QByteArray& path, const QByteArray& folder) {
    if (folder == "/") return path.size() > 1 && path.startsWith('/');
    return path.size() > folder.size() + 1 && path.startsWith(folder) && path[folder.size()] == '/';
}

// The later roots that lie inside `folder`, so the walk can tell when it reaches one of them.
std::vector<std::unique_ptr<PropertiesTreeWalk::Mark>> innerRoots(const std::vector<Root>& roots, size_t from,
                                                                  const QByteArray& folder) {
    std::vector<std::unique_ptr<PropertiesTreeWalk::Mark>> marks;
    for (size_t i = from; i < roots.size(); ++i) {
        struct statx sx;
        if (!isInside(roots[i].path, folder) || !statItem(roots[i].path, sx)) continue;
        marks.push_back(std::make_unique<PropertiesTreeWalk::Mark>(
            roots[i].path.toStdString(), makedev(sx.stx_dev_major, sx.stx_dev_minor), sx.stx_ino));
    }
    return marks;
}

} // namespace

QByteArray PropertiesSizeScanner::canonicalPath(const QUrl& url) {
    const QString path = QDir::cleanPath(url.toLocalFile());
    if (path.isEmpty() || path == QLatin1String("/")) return NativePath::encode(path);
    const QByteArray native = NativePath::encode(path);
    const qsizetype slash = native.lastIndexOf('/');
    QByteArray parent = slash <= 0 ? QByteArray("/") : native.left(slash);
    char resolved[PATH_MAX];
    if (realpath(parent.constData(), resolved)) parent = resolved;
    if (!parent.endsWith('/')) parent += '/';
    return parent + native.mid(slash + 1);
}

PropertiesSizeSummary PropertiesSizeScanner::scan(const QList<QUrl>& urls,
                                                  const std::function<bool()>& isCancelled,
                                                  const Progress& progress, int reportMs) {
    QElapsedTimer clock;
    clock.start();
    qint64 lastReport = 0;
    PropertiesSizeSummary summary; // the selected items themselves; the walk keeps the rest
    std::vector<Root> roots;
    for (const QUrl& url : urls)
        roots.push_back({canonicalPath(url)});
    // A folder comes before anything selected inside it.
    std::stable_sort(roots.begin(), roots.end(),
                     [](const Root& a, const Root& b) { return a.path.size() < b.path.size(); });

    std::unique_ptr<PropertiesTreeWalk> walk;
    const auto poll = [&](bool onCaller) {
        if (isCancelled()) return true;
        if (onCaller && progress && clock.elapsed() - lastReport >= reportMs) {
            PropertiesSizeSummary soFar = summary;
            progress(soFar += walk->counted());
            lastReport = clock.elapsed();
        }
        return false;
    };
    walk = std::make_unique<PropertiesTreeWalk>(poll);
    QSet<QByteArray> seen;
    for (size_t i = 0; i < roots.size() && !summary.cancelled; ++i) {
        if (isCancelled()) {
            summary.cancelled = true;
            break;
        }
        const QByteArray& path = roots[i].path;
        if (roots[i].reached || path.isEmpty() || seen.contains(path)) {
            if (path.isEmpty()) ++summary.unreadable;
            continue;
        }
        seen.insert(path);
        struct statx sx;
        if (!statItem(path, sx)) {
            ++summary.unreadable;
            continue;
        }
        if (!S_ISDIR(sx.stx_mode)) {
            const bool linked = (sx.stx_mask & STATX_NLINK) && sx.stx_nlink > 1;
            if (!linked || walk->firstSight(makedev(sx.stx_dev_major, sx.stx_dev_minor), sx.stx_ino))
                countFile(sx, summary);
            continue;
        }
        auto marks = innerRoots(roots, i + 1, path);
        summary.cancelled = !walk->walk(path, &marks);
        for (const auto& mark : marks)
            for (size_t j = i + 1; j < roots.size(); ++j)
                if (mark->reached && roots[j].path.toStdString() == mark->path) roots[j].reached = true;
    }
    summary += walk->counted();
    return summary;
}

} // namespace orvane
