#pragma once

#include "core/Entry.h"
#include "media/ThumbnailMaker.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QThreadPool>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <vector>

namespace orvane {

// Pictures of image and video entries for the views, process-wide. Asked for the same entry again
// and again while a view scrolls, it makes each picture once per key (path, time, size), keeps the
// recent ones, remembers failures, and calls back on the main thread. Callers call from there.
class MediaThumbnails : public QObject {
    Q_OBJECT
public:
    static constexpr int maxActive = 4;
    static constexpr int costLimit = 50331648;
    static constexpr int imageCost = 1638400; // 640 × 640 × 4 bytes
    static constexpr int failureLimit = 1024;
    using Completion = std::function<void(const QImage&)>;

    // Over the desktop's thumbnail folder and thumbnailers.
    explicit MediaThumbnails(QObject* parent = nullptr);
    MediaThumbnails(ThumbnailMaker maker, QObject* parent = nullptr);
    ~MediaThumbnails() override;

    static QString key(const Entry& entry);
    bool supports(const Entry& entry) const;
    std::optional<QImage> cached(const Entry& entry) const;
    // Every completion fires exactly once; a key asked for again before it started moves to the
    // front, so the screen a person stops on is made before everything scrolled past.
    void request(const Entry& entry, Completion completion);

    int generations() const { return started; }
    // The files not yet started, the next first.
    QStringList queue() const;
    bool idle() const { return active == 0 && jobs.empty(); }

signals:
    // After the completions of an entry ran; views repaint it.
    void arrived(const QString& location);

private:
    struct Job {
        QString key;
        QString path;
    };
    void pump();
    void finished(const QString& key, const QString& path, const QImage& image);

    std::shared_ptr<const ThumbnailMaker> maker;
    QCache<QString, QImage> images;
    QHash<QString, std::vector<Completion>> waiting;
    std::list<Job> jobs;
    QHash<QString, std::list<Job>::iterator> queued; // jobs not yet started, by key
    QSet<QString> failures;
    int active = 0;
    int started = 0;
    QThreadPool pool; // last, so it is drained before the rest goes
};

} // namespace orvane
