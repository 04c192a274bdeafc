#pragma once

#include "core/Entry.h"

#include <QCache>
#include <QHash>
#include <QObject>
#include <QSizeF>
#include <QThreadPool>
#include <functional>
#include <optional>
#include <vector>

namespace orvane {

// The text of the dimensions column, "1920 × 1080", process-wide: image sizes from the header only,
// upright by EXIF orientation, video sizes from the container. Read on two threads, cached by the
// same key as thumbnails, called back on the main thread. Callers call from there.
class MediaDimensions : public QObject {
    Q_OBJECT
public:
    static constexpr int cacheLimit = 2048;
    static constexpr int readers = 2;
    using Completion = std::function<void(const QString&)>;

    explicit MediaDimensions(QObject* parent = nullptr);
    ~MediaDimensions() override;

    // "" for a folder, "—" for a file that has none, or the size; without work, when known.
    std::optional<QString> cached(const Entry& entry) const;
    void request(const Entry& entry, Completion completion);
    // Synchronous and maybe slow.
    static std::optional<QString> read(const QString& path);
    static std::optional<QString> format(QSizeF size);

    bool idle() const { return waiting.isEmpty(); }

signals:
    void arrived(const QString& location);

private:
    static bool readable(const Entry& entry);
    void finished(const QString& key, const QString& location, const QString& text);

    QCache<QString, QString> texts;
    QHash<QString, std::vector<Completion>> waiting;
    QThreadPool pool; // last, so it is drained before the rest goes
};

} // namespace orvane
