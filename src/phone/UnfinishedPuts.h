#pragma once

#include "phone/PhoneReply.h"

#include <QStringList>
#include <functional>

namespace orvane {

// The files of a "put" whose bridge died before it answered. A real phone makes each object before its
// bytes arrive, so a file cut off stays under its name, short, and refuses the retry. Once a bridge is
// back, such objects are removed before anything else is asked. Used on the bridge's worker thread.
class UnfinishedPuts {
public:
    // One request to the bridge now running; false when it failed on the way.
    using Ask = std::function<bool(const QStringList& args, PhoneReply& reply)>;

    // `put` is the request as sent: "put", storage, parent, then local paths.
    void sending(const QStringList& put);
    // The bridge answered, so it has cleaned up after itself whatever happened.
    void answered() { files.clear(); }
    bool empty() const { return files.isEmpty(); }
    // Answers the names removed; what a failing bridge left undone waits for the next one.
    QStringList clearUp(const Ask& ask);
    // What to tell the person about them.
    static QString notice(const QStringList& removed);

private:
    struct File {
        QString storage;
        QString parent;
        QString name;
        qint64 size = 0;
    };
    QList<File> files;
};

} // namespace orvane
