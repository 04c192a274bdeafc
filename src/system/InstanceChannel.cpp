#include "system/InstanceChannel.h"

#include "core/BrowserApp.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
constexpr int answerMs = 3000;
constexpr qsizetype maxMessage = qsizetype(1) << 24; // tens of thousands of paths; more is not a request
// No address starts with a space, so these lines are never taken for one.
const QByteArray revealLine = " reveal";
const QByteArray propertiesLine = " properties";

// Only this user can enter it: made with mode 0700 when missing, refused when it is a link, someone
// else's, or open to others, since whoever can reach the socket sees every path a launch hands over.
bool privateFolder(const QByteArray& path) {
    if (path.isEmpty() || (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)) return false;
    struct stat st;
    return ::lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::geteuid() &&
           (st.st_mode & 077) == 0;
}

// The other end runs as this user; a socket of anyone else's that turns up at the path is not ours.
bool sameUser(const QLocalSocket& socket) {
    const int fd = int(socket.socketDescriptor());
#ifdef __linux__
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(fd, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
#else
    uid_t uid = 0;
    gid_t gid = 0;
    return ::getpeereid(fd, &uid, &gid) == 0 && uid == ::geteuid();
#endif
}

bool connectTo(QLocalSocket& socket, const QString& path) {
    if (path.isEmpty()) return false;
    socket.connectToServer(path);
    return socket.waitForConnected(500) && sameUser(socket);
}

bool someoneAnswers(const QString& path) {
    QLocalSocket probe;
    return connectTo(probe, path);
}
} // namespace

InstanceChannel::InstanceChannel(BrowserApp& app)
    : QObject(app.object()), app(app), server(new QLocalServer(this)) {
    const QString path = socketPath();
    if (path.isEmpty() || someoneAnswers(path)) return;
    QLocalServer::removeServer(path); // what a crashed instance left
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(path)) return;
    connect(server, &QLocalServer::newConnection, this, &InstanceChannel::accept);
}

InstanceChannel::~InstanceChannel() = default;

bool InstanceChannel::listening() const {
    return server->isListening();
}

// Never a name others share: without the session's runtime folder, one of this user's own.
QString InstanceChannel::socketPath() {
    QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    if (!privateFolder(folder))
        folder = QFile::encodeName(QDir::tempPath()) + "/orvane-" + QByteArray::number(::geteuid());
    if (!privateFolder(folder)) {
        qWarning("No folder of this user's own for the instance channel: %s", folder.constData());
        return {};
    }
    return QFile::decodeName(folder) + QStringLiteral("/orvane-instance");
}

bool InstanceChannel::forward(const QList<QUrl>& urls, ExternalOpenMode mode) {
    QLocalSocket socket;
    if (!connectTo(socket, socketPath())) return false;
    socket.write(encode(urls, mode));
    if (!socket.waitForBytesWritten(answerMs)) return false;
    QByteArray answer;
    while (!answer.contains('\n') && socket.waitForReadyRead(answerMs))
        answer += socket.readAll();
    return answer.startsWith("ok\n");
}

QByteArray InstanceChannel::encode(const QList<QUrl>& urls, ExternalOpenMode mode) {
    QByteArray message;
    if (mode == ExternalOpenMode::Reveal) message = revealLine + '\n';
    if (mode == ExternalOpenMode::Properties) message = propertiesLine + '\n';
    for (const QUrl& url : urls)
        message += (url.isLocalFile() ? NativePath::encodedUrl(url.toLocalFile()) : url.toEncoded()) + '\n';
    return message + '\n';
}

QList<QUrl> InstanceChannel::decode(const QByteArray& message) {
    QList<QUrl> urls;
    for (const QByteArray& line : message.split('\n')) {
        if (line.isEmpty() || line.startsWith(' ')) continue;
        const QString path = NativePath::fromEncodedUrl(line);
        const QUrl url =
            path.isEmpty() ? QUrl::fromEncoded(line, QUrl::StrictMode) : QUrl::fromLocalFile(path);
        if (url.isValid()) urls << url;
    }
    return urls;
}

ExternalOpenMode InstanceChannel::modeOf(const QByteArray& message) {
    const QByteArray first = message.left(message.indexOf('\n'));
    if (first == revealLine) return ExternalOpenMode::Reveal;
    if (first == propertiesLine) return ExternalOpenMode::Properties;
    return ExternalOpenMode::Open;
}

void InstanceChannel::accept() {
    while (QLocalSocket* socket = server->nextPendingConnection()) {
        if (!sameUser(*socket)) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
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
    if (const QList<QUrl> urls = decode(message); !urls.isEmpty())
        app.receiveExternalURLs(urls, modeOf(message));
}

} // namespace orvane
