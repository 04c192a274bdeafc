#include "system/FolderPortal.h"

#include "platform/NativePath.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QRandomGenerator>

namespace orvane {

namespace {
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString request = QStringLiteral("org.freedesktop.portal.Request");
} // namespace

FolderPortal::FolderPortal(QObject* parent) : QObject(parent) {}

bool FolderPortal::available() {
    QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    if (!bus) return false;
    if (bus->isServiceRegistered(service)) return true;
    const QDBusReply<QStringList> startable = bus->call(QStringLiteral("ListActivatableNames"));
    return startable.isValid() && startable.value().contains(service);
}

// The reply names the request object by a token of ours, so the answer is listened for before asking:
// a quick portal could otherwise answer before anyone listens.
void FolderPortal::choose(const QString& folder, const QString& title, Chosen done) {
    if (pending) return;
    pending = std::move(done);
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = QStringLiteral("orvane%1").arg(QRandomGenerator::global()->generate());
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    handle = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token);
    bus.connect(service, handle, request, QStringLiteral("Response"), this,
                SLOT(response(uint, QVariantMap)));
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.FileChooser"), QStringLiteral("OpenFile"));
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("directory"), true},
                              {QStringLiteral("modal"), true},
                              {QStringLiteral("accept_label"), QStringLiteral("Allow Access")},
                              {QStringLiteral("current_folder"), NativePath::encode(folder) + '\0'}};
    call << QString() << title << options;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        if (w->isError()) finish({});
    });
}

void FolderPortal::response(uint code, const QVariantMap& results) {
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    finish(code == 0 && !uris.isEmpty() ? NativePath::fromEncodedUrl(uris.front().toLatin1()) : QString());
}

void FolderPortal::finish(const QString& path) {
    QDBusConnection::sessionBus().disconnect(service, handle, request, QStringLiteral("Response"), this,
                                             SLOT(response(uint, QVariantMap)));
    if (Chosen done = std::exchange(pending, {})) done(path);
}

} // namespace orvane
