#include "media/MediaThumbnails.h"

namespace orvane {

MediaThumbnails::MediaThumbnails(QObject* parent)
    : MediaThumbnails(ThumbnailMaker(ThumbnailCache(), DesktopThumbnailers()), parent) {}

MediaThumbnails::MediaThumbnails(ThumbnailMaker made, QObject* parent)
    : QObject(parent), maker(std::make_shared<const ThumbnailMaker>(std::move(made))), images(costLimit) {
    pool.setMaxThreadCount(maxActive);
}

MediaThumbnails::~MediaThumbnails() {
    pool.clear();
    pool.waitForDone();
}

QString MediaThumbnails::key(const Entry& entry) {
    const qint64 seconds = entry.modified.isValid() ? entry.modified.toSecsSinceEpoch() : 0;
    return entry.location + u'|' + QString::number(seconds) + u'|' + QString::number(entry.size);
}

bool MediaThumbnails::supports(const Entry& entry) const {
    // A phone item's picture comes from the phone, never from a file here.
    return !entry.directory && !entry.isPhone() && maker->supports(entry.location);
}

std::optional<QImage> MediaThumbnails::cached(const Entry& entry) const {
    if (const QImage* image = images.object(key(entry))) return *image;
    return std::nullopt;
}

void MediaThumbnails::request(const Entry& entry, Completion completion) {
    if (!supports(entry)) return completion(QImage());
    const QString k = key(entry);
    if (const QImage* image = images.object(k)) return completion(*image);
    if (failures.contains(k)) return completion(QImage());
    const auto waiter = waiting.find(k);
    if (waiter != waiting.end()) {
        waiter->push_back(std::move(completion));
        if (const auto job = queued.constFind(k); job != queued.constEnd())
            jobs.splice(jobs.begin(), jobs, *job);
        return;
    }
    waiting[k].push_back(std::move(completion));
    jobs.push_back({k, entry.location});
    queued.insert(k, std::prev(jobs.end()));
    pump();
}

QStringList MediaThumbnails::queue() const {
    QStringList paths;
    for (const Job& job : jobs)
        paths << job.path;
    return paths;
}

void MediaThumbnails::pump() {
    while (active < maxActive && !jobs.empty()) {
        Job job = std::move(jobs.front());
        jobs.pop_front();
        queued.remove(job.key);
        ++active;
        ++started;
        pool.start([this, made = maker, job] {
            const QImage image = made->make(job.path);
            QMetaObject::invokeMethod(
                this, [this, job, image] { finished(job.key, job.path, image); }, Qt::QueuedConnection);
        });
    }
}

void MediaThumbnails::finished(const QString& key, const QString& path, const QImage& image) {
    --active;
    if (!image.isNull()) {
        images.insert(key, new QImage(image), imageCost);
    } else {
        // Kept small; a file whose picture failed long ago gets another chance.
        if (failures.size() > failureLimit) failures.clear();
        failures.insert(key);
    }
    for (const Completion& completion : waiting.take(key))
        completion(image);
    emit arrived(path);
    pump();
}

} // namespace orvane
