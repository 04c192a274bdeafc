#include "system/FileManagerBus.h"

#include "platform/NativePath.h"
#include "system/ApplicationBus.h"
#include "system/InstanceChannel.h"

#include <QDBusConnectionInterface>

namespace orvane {

const QString FileManagerBus::serviceName = QStringLiteral("org.freedesktop.FileManager1");
const QString FileManagerBus::objectPath = QStringLiteral("/org/freedesktop/FileManager1");

FileManagerBus::FileManagerBus(BrowserApp& app, const InstanceChannel* channel, const QDBusConnection& bus)
    : QObject(app.object()), app(app), channel(channel), bus(bus),
      application(new ApplicationBus(
          app, bus, [this](const QStringList& uris) { deliver(uris, ExternalOpenMode::Open); }, this)) {
    if (!this->bus.isConnected()) return;
    isExported = this->bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    if (isExported)
        this->bus.interface()->registerService(serviceName, QDBusConnectionInterface::QueueService,
                                               QDBusConnectionInterface::AllowReplacement);
}

FileManagerBus::~FileManagerBus() {
    if (!isExported) return;
    bus.interface()->unregisterService(serviceName);
    bus.unregisterObject(objectPath);
}

bool FileManagerBus::ownsName() const {
    return bus.isConnected() && bus.interface()->serviceOwner(serviceName).value() == bus.baseService();
}

bool FileManagerBus::takeName() {
    if (!isExported) return false;
    bus.interface()->registerService(serviceName, QDBusConnectionInterface::ReplaceExistingService,
                                     QDBusConnectionInterface::AllowReplacement);
    claim = ownsName();
    return claim;
}

// Whoever waits in line gets the name back; with nobody there it is free again, and taken again.
bool FileManagerBus::handBackName() {
    if (!isExported) return false;
    claim = false;
    bus.interface()->unregisterService(serviceName);
    return bus.interface()
        ->registerService(serviceName, QDBusConnectionInterface::QueueService,
                          QDBusConnectionInterface::AllowReplacement)
        .isValid();
}

QList<QUrl> FileManagerBus::urlsOf(const QStringList& uris) {
    QList<QUrl> urls;
    urls.reserve(uris.size());
    for (const QString& uri : uris) {
        const QByteArray bytes = uri.toUtf8();
        const QString path =
            bytes.startsWith('/') ? NativePath::decode(bytes) : NativePath::fromEncodedUrl(bytes);
        urls << (path.isEmpty() ? QUrl(uri) : QUrl::fromLocalFile(path));
    }
    return urls;
}

// A request reaching a second process goes to the first, which holds the windows.
void FileManagerBus::deliver(const QStringList& uris, ExternalOpenMode mode) {
    const QList<QUrl> urls = urlsOf(uris);
    if (urls.isEmpty()) return;
    if (channel && !channel->listening() && InstanceChannel::forward(urls, mode)) return;
    app.receiveExternalURLs(urls, mode);
}

void FileManagerBus::ShowFolders(const QStringList& uris, const QString&) {
    deliver(uris, ExternalOpenMode::Open);
}

void FileManagerBus::ShowItems(const QStringList& uris, const QString&) {
    deliver(uris, ExternalOpenMode::Reveal);
}

void FileManagerBus::ShowItemProperties(const QStringList& uris, const QString&) {
    deliver(uris, ExternalOpenMode::Properties);
}

} // namespace orvane
