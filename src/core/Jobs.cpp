#include "core/Jobs.h"

#include "core/Job.h"

#include <algorithm>

namespace orvane {

Jobs::~Jobs() {
    qDeleteAll(std::exchange(list, {}));
}

Job* Jobs::start(const QString& title, QObject* window, bool holdsWindow) {
    const bool wasHeld = holdsWindow && holds(window);
    auto* job = new Job(title, window, holdsWindow);
    list.append(job);
    connect(job, &Job::finished, this, [this, job] { end(job); });
    emit started(job);
    if (holdsWindow && !wasHeld) emit holdingChanged(window, true);
    return job;
}

void Jobs::end(Job* job) {
    if (!list.removeOne(job)) return;
    emit ended(job);
    QObject* window = job->window();
    if (job->holdsWindow() && !holds(window)) emit holdingChanged(window, false);
    job->deleteLater();
}

QList<Job*> Jobs::runningFor(const QObject* window) const {
    QList<Job*> mine;
    std::copy_if(list.begin(), list.end(), std::back_inserter(mine),
                 [window](const Job* job) { return job->window() == window; });
    return mine;
}

bool Jobs::holds(const QObject* window) const {
    return std::any_of(list.begin(), list.end(),
                       [window](const Job* job) { return job->holdsWindow() && job->window() == window; });
}

bool Jobs::anyHolding() const {
    return std::any_of(list.begin(), list.end(), [](const Job* job) { return job->holdsWindow(); });
}

} // namespace orvane
