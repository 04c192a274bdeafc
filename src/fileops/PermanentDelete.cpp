#include "fileops/PermanentDelete.h"

#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>

namespace orvane {

PermanentDelete::Result PermanentDelete::run(const QStringList& paths) {
    Result result;
    for (const QString& path : paths) {
        QString error;
        if (FileTree::remove(path, error))
            ++result.deleted;
        else
            result.failures << NativePath::display(path.section(u'/', -1)) + QStringLiteral(": ") + error;
    }
    return result;
}

void PermanentDelete::start(const QStringList& paths, QObject* context,
                            std::function<void(const Result&)> done) {
    QPointer<QObject> guard(context);
    QThreadPool::globalInstance()->start([paths, guard, done = std::move(done)] {
        const Result result = run(paths);
        // The application object outlives every window, so the post is safe even if `context` is gone;
        // the guard is read only on the main thread.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, done, result] {
                if (guard) done(result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace orvane
