#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <functional>

namespace orvane {

class BrowserApp;

// The application's own name on the session bus, through which the desktop launches a program whose
// desktop file is D-Bus activatable: `gio open DIR` ends in Open here.
class ApplicationBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    static const QString serviceName;
    static const QString objectPath;

    using Deliver = std::function<void(const QStringList& uris)>;
    ApplicationBus(BrowserApp& app, const QDBusConnection& bus, Deliver deliver, QObject* parent);
    ~ApplicationBus() override;

public slots:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

private:
    BrowserApp& app;
    QDBusConnection bus;
    Deliver deliver;
    bool exported = false;
};

} // namespace orvane
