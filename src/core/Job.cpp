#include "core/Job.h"

namespace orvane {

Job::Job(const QString& title, QObject* window, bool holdsWindow)
    : name(title), owner(window), holding(holdsWindow) {}

void Job::setProgress(double value) {
    if (done) return;
    fraction = value;
    emit progressed(value);
}

void Job::cancel() {
    if (done || cancelRequested) return;
    cancelRequested = true;
    if (canceller) canceller();
}

void Job::finish() {
    if (done) return;
    done = true;
    emit finished();
}

} // namespace orvane
