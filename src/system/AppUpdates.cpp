#include "system/AppUpdates.h"

#include "core/Preferences.h"
#include "core/Settings.h"

#include <QDesktopServices>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QSslConfiguration>
#include <QTimer>

namespace orvane {

namespace {

const QString upToDate = QStringLiteral("You’re up to date.");
const QString failed = QStringLiteral("Couldn’t check for updates. Please try again.");
constexpr qint64 day = 24 * 60 * 60;

} // namespace

UpdateSource UpdateSource::builtIn() {
    UpdateSource source;
    source.feed = QUrl(QStringLiteral(ORVANE_UPDATE_FEED), QUrl::StrictMode);
    source.host = QStringLiteral(ORVANE_UPDATE_HOST);
    source.publicKey = QByteArrayLiteral(ORVANE_UPDATE_KEY);
    source.releaseNotes = QUrl(QStringLiteral(ORVANE_RELEASE_NOTES), QUrl::StrictMode);
    return source;
}

AppUpdates::AppUpdates(Settings& settings, UpdateSource source, QString version, QObject* parent)
    : QObject(parent), settings(settings), source(std::move(source)),
      current(QVersionNumber::fromString(version)) {}

AppUpdates::~AppUpdates() = default;

bool AppUpdates::configured() const {
    const QUrl& feed = source.feed;
    const bool feedSound = feed.isValid() && feed.scheme() == u"https" && !source.host.isEmpty() &&
                           feed.host() == source.host && feed.userInfo().isEmpty();
    return feedSound &&
           QByteArray::fromBase64(source.publicKey, QByteArray::AbortOnBase64DecodingErrors).size() == 32;
}

bool AppUpdates::ownedByPackage(const QByteArray& path) {
    if (!path.startsWith("/usr/") || path.startsWith("/usr/local/")) return false;
    QProcess query;
    // The path goes to dpkg as its own argument; it is the program's own, known to be UTF-8 here.
    query.start(QStringLiteral("dpkg-query"), {QStringLiteral("-S"), QString::fromUtf8(path)});
    return query.waitForFinished(3000) && query.exitStatus() == QProcess::NormalExit && query.exitCode() == 0;
}

bool AppUpdates::automaticallyChecks() const {
    return settings.automaticUpdateChecks().value_or(false);
}

void AppUpdates::setAutomaticallyChecks(bool checks) {
    start();
    settings.setAutomaticUpdateChecks(checks);
    emit changed();
}

bool AppUpdates::canCheck() const {
    return configured() && !fromPackage && !pending;
}

QDateTime AppUpdates::lastChecked() const {
    return settings.lastUpdateCheck();
}

void AppUpdates::start() {
    if (!configured() || fromPackage || started || Preferences::selfTest()) return;
    started = true;
    // Automatic checks are on at the first start; the person's later choice is left alone.
    if (!settings.updateDefaultsApplied()) {
        settings.setAutomaticUpdateChecks(true);
        settings.setUpdateDefaultsApplied();
    }
    network = new QNetworkAccessManager(this);
    daily = new QTimer(this);
    daily->setInterval(60 * 60 * 1000);
    connect(daily, &QTimer::timeout, this, &AppUpdates::checkIfDue);
    daily->start();
    // Not at once: the first minute belongs to the person's own work.
    QTimer::singleShot(60 * 1000, this, &AppUpdates::checkIfDue);
}

void AppUpdates::checkIfDue() {
    const QDateTime last = lastChecked();
    if (automaticallyChecks() && !pending &&
        (!last.isValid() || last.secsTo(QDateTime::currentDateTime()) >= day))
        checkForUpdates();
}

void AppUpdates::checkForUpdates() {
    if (fromPackage) return;
    if (!configured()) return setStatus(QStringLiteral("The update server is not configured."));
    start();
    if (pending) return;
    QNetworkRequest request(source.feed);
    request.setTransferTimeout(source.timeoutMs);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::SameOriginRedirectPolicy);
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.addCaCertificates(source.trusted);
    request.setSslConfiguration(tls);
    pending = network->get(request);
    QNetworkReply* reply = pending;
    // A feed is small; a server that sends without end is cut off, not buffered.
    connect(reply, &QNetworkReply::downloadProgress, this, [this, reply](qint64 received, qint64) {
        if (received > source.maxBytes) reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { received(reply); });
    setStatus(QStringLiteral("Checking for updates…"));
}

void AppUpdates::received(QNetworkReply* reply) {
    reply->deleteLater();
    const bool ok = reply->error() == QNetworkReply::NoError && reply->bytesAvailable() <= source.maxBytes;
    const QByteArray body = ok ? reply->readAll() : QByteArray();
    pending = nullptr;
    const auto reading =
        ok ? UpdateFeed::read(body, QByteArray::fromBase64(source.publicKey)) : UpdateFeed::Reading{};
    finishCheck(reading, !ok || !reading.error.isEmpty());
}

void AppUpdates::finishCheck(const UpdateFeed::Reading& reading, bool failedCheck) {
    settings.setLastUpdateCheck(QDateTime::currentDateTime());
    if (failedCheck) return setStatus(failed);
    const bool newer = reading.newest && reading.newest->version > current;
    found = newer ? reading.newest : std::nullopt;
    setStatus(newer ? QStringLiteral("A new update is available.") : upToDate);
}

void AppUpdates::openReleaseNotes() const {
    const QUrl page = found && found->releaseNotes.isValid() ? found->releaseNotes : source.releaseNotes;
    if (page.scheme() == u"https") QDesktopServices::openUrl(page);
}

void AppUpdates::setStatus(const QString& text) {
    line = text;
    emit changed();
}

} // namespace orvane
