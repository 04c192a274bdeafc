#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace orvane {

class Job;

// Every long job of the process, in the order they started. A window is busy exactly while a job
// that holds it is listed; closing it and quitting ask the list.
class Jobs : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~Jobs() override;

    // The job is listed until its runner finishes it; the list owns it.
    Job* start(const QString& title, QObject* window, bool holdsWindow = true);
    QList<Job*> running() const { return list; }
    QList<Job*> runningFor(const QObject* window) const;
    bool holds(const QObject* window) const;
    bool anyHolding() const;

signals:
    void started(Job* job);
    // Listed no more; the job object goes after the current event.
    void ended(Job* job);
    // Whether `window` is held changed.
    void holdingChanged(QObject* window, bool held);

private:
    void end(Job* job);

    QList<Job*> list;
};

} // namespace orvane
