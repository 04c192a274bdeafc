#include "fileops/TransferProgressSnapshot.h"

#include <QDirIterator>
#include <QFile>
#include <algorithm>
#include <sys/stat.h>

namespace orvane {

namespace {
bool lstatPath(const QString& path, struct stat& st) {
    return lstat(QFile::encodeName(path).constData(), &st) == 0;
}
} // namespace

TransferProgressSnapshot::TransferProgressSnapshot(const TransferJobs& jobs) {
    for (const TransferJob& job : jobs) {
        add(job.source, job.destination);
        struct stat st;
        if (lstatPath(job.source, st) && S_ISDIR(st.st_mode)) addTree(job.source, job.destination);
    }
    qint64 weights = 0;
    for (const Item& item : list)
        weights += item.weight;
    sum = std::max<qint64>(1, weights);
}

void TransferProgressSnapshot::add(const QString& source, const QString& destination) {
    struct stat st;
    if (!lstatPath(source, st)) return; // unreadable now: it drops out of the weights
    const bool regular = S_ISREG(st.st_mode);
    list.push_back({destination, regular ? std::max<qint64>(1, st.st_size) : 1, regular});
}

// The iterator does not enter linked folders, so a link is one item and its target is never weighed.
void TransferProgressSnapshot::addTree(const QString& source, const QString& destination) {
    QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    const qsizetype prefix = source.size();
    while (it.hasNext()) {
        const QString path = it.next();
        add(path, destination + path.mid(prefix));
    }
}

double TransferProgressSnapshot::fraction() const {
    qint64 done = 0;
    for (const Item& item : list) {
        struct stat st;
        if (!lstatPath(item.destination, st)) continue;
        // Being there counts one unit, which is all an empty file weighs, so such a run moves item by item.
        done += item.regular ? std::clamp<qint64>(st.st_size, 1, item.weight) : item.weight;
    }
    return std::min(0.99, double(done) / double(sum));
}

} // namespace orvane
