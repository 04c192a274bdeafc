#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

namespace orvane {

// One piece of long work: a transfer, a deletion, a scan. Its runner reports progress and the end
// here; whoever shows it (the window's edge, the close and quit guards) reads it from the list.
class Job : public QObject {
    Q_OBJECT
public:
    Job(const QString& title, QObject* window, bool holdsWindow);

    QString title() const { return name; }
    // The window the job belongs to; null for work of the whole process.
    QObject* window() const { return owner; }
    // While it runs, the window holds still: no second job, no closing.
    bool holdsWindow() const { return holding; }
    // 0 to 1; a fall back to 0 starts a new part (the next file of a phone transfer).
    double progress() const { return fraction; }
    bool isFinished() const { return done; }
    bool isCancelled() const { return cancelRequested; }

    void setProgress(double value);
    // Asked by Escape or the cancel control; the runner ends the job when it has stopped.
    void cancel();
    void setCanceller(std::function<void()> stop) { canceller = std::move(stop); }
    void finish();

signals:
    void progressed(double fraction);
    void finished();

private:
    QString name;
    QPointer<QObject> owner;
    bool holding;
    double fraction = 0;
    bool done = false;
    bool cancelRequested = false;
    std::function<void()> canceller;
};

} // namespace orvane
