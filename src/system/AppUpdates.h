#pragma once

#include "system/UpdateFeed.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSslCertificate>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

namespace orvane {

class Settings;

// Where updates come from. The built-in one is fixed when Orvane is built; a test brings its own
// server, key and certificate.
struct UpdateSource {
    QUrl feed;
    QString host;                   // the update service's host; the feed must be on it
    QByteArray publicKey;           // base64 of the 32-byte Ed25519 release key
    QUrl releaseNotes;              // the product's page, when the feed names none
    QList<QSslCertificate> trusted; // beside the system's authorities
    int timeoutMs = 30000;
    qint64 maxBytes = 4 << 20;
    static UpdateSource builtIn();
};

// The update check: at most once a day when the person agrees, never downloading anything, its
// outcome reduced to one line of status. Installs owned by the system's package manager check
// nothing: their updates come from there.
class AppUpdates : public QObject {
    Q_OBJECT
public:
    AppUpdates(Settings& settings, UpdateSource source, QString version, QObject* parent = nullptr);
    ~AppUpdates() override;

    bool configured() const;
    bool packaged() const { return fromPackage; }
    void setPackaged(bool packaged) { fromPackage = packaged; }
    // Whether the program at `path` belongs to an installed package.
    static bool ownedByPackage(const QByteArray& path);

    QString status() const { return line; }
    bool automaticallyChecks() const;
    void setAutomaticallyChecks(bool checks);
    bool canCheck() const;
    QDateTime lastChecked() const;
    // The release the last check found, if any.
    std::optional<UpdateItem> available() const { return found; }

    void start();
    void checkForUpdates();
    void openReleaseNotes() const;

signals:
    void changed();

private:
    void setStatus(const QString& text);
    void checkIfDue();
    void received(QNetworkReply* reply);
    void finishCheck(const UpdateFeed::Reading& reading, bool failed);

    Settings& settings;
    UpdateSource source;
    QVersionNumber current;
    QString line;
    bool started = false;
    bool fromPackage = false;
    std::optional<UpdateItem> found;
    QNetworkAccessManager* network = nullptr;
    QPointer<QNetworkReply> pending;
    QTimer* daily = nullptr;
};

} // namespace orvane
