#pragma once

#include "preview/PreviewContent.h"
#include "preview/PreviewRenderers.h"

#include <QObject>
#include <QSize>
#include <atomic>
#include <memory>

namespace orvane {

// Reads one file at a time for a preview on the global thread pool and hands the result back on the
// main thread. Each request moves the generation on: an earlier file still loading is skipped if it
// has not started, and its result is dropped if it has.
class PreviewLoader : public QObject {
    Q_OBJECT
public:
    explicit PreviewLoader(QObject* parent = nullptr);

    PreviewRenderers& renderers() { return list; }
    void request(const QString& path, QSize bound);
    // Drops whatever is on its way.
    void cancel();

signals:
    // A null content: the file could not be opened.
    void loaded(const PreviewContent& content);

private:
    PreviewRenderers list;
    std::shared_ptr<std::atomic<quint64>> generation;
};

} // namespace orvane
