#pragma once

#include "core/BrowserApp.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QUrl>

class QLocalServer;
class QLocalSocket;

namespace orvane {

// One running Orvane per user takes the open requests of later launches: `Orvane PATH` while it runs
// hands PATH over and ends, as the system's open does on a Mac. A launch whose channel nobody
// answers, a stale socket left by a crash included, serves the channel itself.
class InstanceChannel : public QObject {
    Q_OBJECT
public:
    // Listens unless another instance already answers.
    explicit InstanceChannel(BrowserApp& app);
    ~InstanceChannel() override;
    bool listening() const;

    // Hands the items to a running instance; false when none took them, so this launch opens them.
    static bool forward(const QList<QUrl>& urls, ExternalOpenMode mode = ExternalOpenMode::Open);
    // Empty when this user has no folder of their own to put it in: then each launch opens its own.
    static QString socketPath();

    // One item per line, exact bytes kept, and an empty line to end; a request other than opening
    // says so on a first line of its own.
    static QByteArray encode(const QList<QUrl>& urls, ExternalOpenMode mode = ExternalOpenMode::Open);
    static QList<QUrl> decode(const QByteArray& message);
    static ExternalOpenMode modeOf(const QByteArray& message);

private:
    void accept();
    void read(QLocalSocket* socket);

    BrowserApp& app;
    QLocalServer* server;
};

} // namespace orvane
