#include "preview/PreviewLoader.h"

#include <QPointer>
#include <QThreadPool>

namespace orvane {

PreviewLoader::PreviewLoader(QObject* parent)
    : QObject(parent), generation(std::make_shared<std::atomic<quint64>>(0)) {}

void PreviewLoader::request(const QString& path, QSize bound) {
    const quint64 mine = ++*generation;
    QPointer<PreviewLoader> self(this);
    QThreadPool::globalInstance()->start([self, mine, path, bound, renderers = list, now = generation] {
        if (*now != mine) return;
        const PreviewContent content = renderers.load(path, bound);
        QMetaObject::invokeMethod(
            self,
            [self, mine, now, content] {
                if (self && *now == mine) emit self->loaded(content);
            },
            Qt::QueuedConnection);
    });
}

void PreviewLoader::cancel() {
    ++*generation;
}

} // namespace orvane
