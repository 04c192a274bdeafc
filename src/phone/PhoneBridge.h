#pragma once

#include "phone/PhoneReply.h"

#include <QList>
#include <QStringList>
#include <chrono>
#include <functional>

namespace orvane {

// The one road to the phone. Requests from every window run one at a time, in call order, on the
// serial worker "Belcove.MTP", against one long-lived `mtp-bridge --serve` child. Any transport
// failure (no bridge, broken pipe, end of file, bad JSON, watchdog) ends the child and reaches the
// caller as the single unavailable text; the next request starts a new bridge. A "get" or "put" has no
// overall limit but ends the same way after 60 s without progress (ORVANE_TRANSFER_STALL_MS).
class PhoneBridge {
public:
    using Progress = std::function<void(double fraction)>;
    using Done = std::function<void(const PhoneReply& reply)>;

    // Returns at once. `progress` (optional) runs for each progress line and `done` exactly once
    // after them, both on the main thread.
    static void run(const QStringList& args, Progress progress, Done done);
    // One call a request of the protocol, each as `run`.
    static void scan(Done done);
    static void list(quint32 storage, quint32 parent, Done done);
    // Each pair is a handle and the local path it is written to.
    static void get(const QList<std::pair<quint32, QString>>& files, Progress progress, Done done);
    static void put(quint32 storage, quint32 parent, const QStringList& paths, Progress progress, Done done);
    static void mkdir(quint32 storage, quint32 parent, const QString& name, Done done);
    static void rename(quint32 id, const QString& name, Done done);
    static void move(quint32 id, quint32 storage, quint32 parent, Done done);
    static void remove(quint32 id, Done done);
    static void info(quint32 id, Done done);

    static QString unavailableText();
    // What the client cleared up on the phone after a bridge that died, said once; a new bridge first
    // removes what a "put" it cut off left behind.
    static std::optional<QString> takeNotice();
    // Beside the application: the bundle's Contents/Helpers, or the executable's own folder.
    static QString defaultExecutable();
    // For tests and tools: which executable to start (empty restores the default), and the
    // limit of every request but "get" and "put". A changed executable is used from the next request.
    static void setExecutable(const QString& path);
    static void setWatchdogLimit(std::chrono::milliseconds limit);
    // Ends the running bridge in turn, so the next request starts one that reads the environment anew.
    static void restart();

    PhoneBridge() = delete;
};

} // namespace orvane
