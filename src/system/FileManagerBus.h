#pragma once

#include "core/BrowserApp.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace orvane {

class ApplicationBus;
class InstanceChannel;

// The desktop's reveal service on the session bus, which browsers, editors and download managers
// call for "Show in folder". Orvane stands in line for the name and holds it whenever it is free;
// it takes it from another holder only while it is the default folder browser.
class FileManagerBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    static const QString serviceName;
    static const QString objectPath;

    // `channel` is this process's end of the single instance: when another process holds it, the
    // requests that reach this one go there.
    FileManagerBus(BrowserApp& app, const InstanceChannel* channel,
                   const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~FileManagerBus() override;

    bool exported() const { return isExported; }
    bool ownsName() const;
    // Takes the name even from another holder that allows it, as the default folder browser does;
    // false when it stays elsewhere.
    bool takeName();
    // Lets the next in line have the name and stands in line again behind it.
    bool handBackName();
    // Holds the name because it took it, not only because nobody else wanted it.
    bool claimed() const { return claim && ownsName(); }

    // File URIs by their exact bytes (percent escapes of bytes that are not UTF-8 included) and
    // absolute paths; anything else is kept as it came, to be reported unavailable.
    static QList<QUrl> urlsOf(const QStringList& uris);
    void deliver(const QStringList& uris, ExternalOpenMode mode);

public slots:
    Q_SCRIPTABLE void ShowFolders(const QStringList& uris, const QString& startupId);
    Q_SCRIPTABLE void ShowItems(const QStringList& uris, const QString& startupId);
    Q_SCRIPTABLE void ShowItemProperties(const QStringList& uris, const QString& startupId);

private:
    BrowserApp& app;
    const InstanceChannel* channel;
    QDBusConnection bus;
    ApplicationBus* application;
    bool isExported = false;
    bool claim = false;
};

} // namespace orvane
