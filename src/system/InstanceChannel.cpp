#include "system/InstanceChannel.h"

#include "core/BrowserApp.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>

namespace orvane {

namespace {
constexpr int answerMs = 3000;
constexpr qsizetype maxMessage = qsizetype(1) << 20; // thousands of paths; more is not a request

bool someoneAnswers() {
    QLocalSocket probe;
    probe.connectToServer(InstanceChannel::socketPath());
    return probe.waitForConnected(500);
}
} // namespace

InstanceChannel::InstanceChannel(BrowserApp& app)
    : QObject(app.object()), app(app), server(new QLocalServer(this)) {
    if (someoneAnswers()) return;
    QLocalServer::removeServer(socketPath()); // what a crashed instance left
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(socketPath())) return;
    connect(server, &QLocalServer::newConnection, this, &InstanceChannel::accept);
}

InstanceChannel::~InstanceChannel() = default;

bool InstanceChannel::listening() const {
    return server->isListening();
}

QString InstanceChannel::socketPath() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) folder = QDir::tempPath();
    return folder + QStringLiteral("/orvane-instance");
}

bool InstanceChannel::forward(const QList<QUrl>& urls) {
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (!socket.waitForConnected(500)) return false;
    socket.write(encode(urls));
    if (!socket.waitForBytesWritten(answerMs)) return false;
    QByteArray answer;
    while (!answer.contains('\n') && socket.waitForReadyRead(answerMs))
        answer += socket.readAll();
    return answer.startsWith("ok\n");
}

QByteArray InstanceChannel::encode(const QList<QUrl>& urls) {
    QByteArray message;
    for (const QUrl& url : urls)
        message += (url.isLocalFile() ? NativePath::encodedUrl(url.toLocalFile()) : url.toEncoded()) + '\n';
    return message + '\n';
}

QList<QUrl> InstanceChannel::decode(const QByteArray& message) {
    QList<QUrl> urls;
    for (const QByteArray& line : message.split('\n')) {
        if (line.isEmpty()) continue;
        const QString path = NativePath::fromEncodedUrl(line);
        const QUrl url =
            path.isEmpty() ? QUrl::fromEncoded(line, QUrl::StrictMode) : QUrl::fromLocalFile(path);
        if (url.isValid()) urls << url;
    }
    return urls;
}

void InstanceChannel::accept() {
    while (QLocalSocket* socket = server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(socket); });
    }
}

// Only a whole message counts; one that never ends is cut off rather than kept.
void InstanceChannel::read(QLocalSocket* socket) {
    QByteArray message = socket->property("message").toByteArray() + socket->readAll();
    if (message.size() > maxMessage) {
        socket->abort();
        return;
    }
    socket->setProperty("message", message);
    if (!message.endsWith("\n\n") && message != "\n") return;
    socket->write("ok\n");
    socket->flush();
    socket->disconnectFromServer();
    if (const QList<QUrl> urls = decode(message); !urls.isEmpty()) app.receiveExternalURLs(urls);
}

} // namespace orvane
