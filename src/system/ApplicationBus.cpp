#include "system/ApplicationBus.h"

#include "core/BrowserApp.h"
#include "core/BrowserWindow.h"

#include <QDBusConnectionInterface>
#include <QWidget>

namespace orvane {

const QString ApplicationBus::serviceName = QStringLiteral("org.orvane.Orvane");
const QString ApplicationBus::objectPath = QStringLiteral("/org/orvane/Orvane");

ApplicationBus::ApplicationBus(BrowserApp& app, const QDBusConnection& bus, Deliver deliver, QObject* parent)
    : QObject(parent), app(app), bus(bus), deliver(std::move(deliver)) {
    exported = this->bus.isConnected() &&
               this->bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    // A second process leaves the name to the first, which the requests reach anyway.
    if (exported)
        this->bus.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService);
}

ApplicationBus::~ApplicationBus() {
    if (!exported) return;
    bus.interface()->unregisterService(serviceName);
    bus.unregisterObject(objectPath);
}

// A launch from the menu: the first window comes at the end of launching; later, a new one.
void ApplicationBus::Activate(const QVariantMap&) {
    if (!app.launched()) return;
    const std::vector<BrowserWindow*> windows = app.browserWindows();
    QWidget* shown = windows.empty() ? app.openWindow()->widget() : windows.back()->widget();
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void ApplicationBus::Open(const QStringList& uris, const QVariantMap&) {
    deliver(uris);
}

void ApplicationBus::ActivateAction(const QString&, const QVariantList&, const QVariantMap& platformData) {
    Activate(platformData);
}

} // namespace orvane
