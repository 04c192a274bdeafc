#include "media/DesktopThumbnailers.h"

#include "media/MediaFile.h"
#include "media/ThumbnailCache.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QMimeDatabase>
#include <QStandardPaths>
#include <QTextStream>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace orvane {

namespace {

QStringList xdgDataFolders() {
    QStringList folders;
    const QByteArray home = qgetenv("XDG_DATA_HOME");
    folders << (home.isEmpty() ? QDir::homePath() + QLatin1String("/.local/share")
                               : QString::fromLocal8Bit(home));
    const QByteArray dirs = qgetenv("XDG_DATA_DIRS");
    folders << QString::fromLocal8Bit(dirs.isEmpty() ? QByteArray("/usr/local/share:/usr/share") : dirs)
                   .split(u':', Qt::SkipEmptyParts);
    return folders;
}

// Splits an Exec line at blanks, keeping double-quoted words whole.
QStringList splitCommand(const QString& command) {
    QStringList words;
    QString word;
    bool quoted = false, started = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command[i];
        if (c == u'"') {
            quoted = !quoted;
            started = true;
        } else if (c == u'\\' && quoted && i + 1 < command.size()) {
            word += command[++i];
        } else if (c.isSpace() && !quoted) {
            if (started) words << word;
            word.clear();
            started = false;
        } else {
            word += c;
            started = true;
        }
    }
    if (started) words << word;
    return words;
}

QByteArray fillField(const QString& word, const QByteArray& path, const QByteArray& uri,
                     const QByteArray& output, int side) {
    QByteArray out;
    const QByteArray text = word.toUtf8();
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '%' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char code = text[++i];
        if (code == 'i')
            out += path;
        else if (code == 'u')
            out += uri;
        else if (code == 'o')
            out += output;
        else if (code == 's')
            out += QByteArray::number(side);
        else if (code == '%')
            out += '%';
    }
    return out;
}

} // namespace

DesktopThumbnailers::DesktopThumbnailers(const QStringList& dataFolders) {
    for (const QString& folder : dataFolders.isEmpty() ? xdgDataFolders() : dataFolders)
        readFolder(folder + QLatin1String("/thumbnailers"));
}

void DesktopThumbnailers::readFolder(const QString& folder) {
    const QDir dir(folder);
    for (const QString& name : dir.entryList({QStringLiteral("*.thumbnailer")}, QDir::Files, QDir::Name))
        readEntry(dir.filePath(name));
}

void DesktopThumbnailers::readEntry(const QString& file) {
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text)) return;
    QString exec, tryExec;
    QStringList types;
    QTextStream lines(&in);
    while (!lines.atEnd()) {
        const QString line = lines.readLine().trimmed();
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0) continue;
        const QString key = line.left(eq).trimmed(), value = line.mid(eq + 1).trimmed();
        if (key == QLatin1String("Exec"))
            exec = value;
        else if (key == QLatin1String("TryExec"))
            tryExec = value;
        else if (key == QLatin1String("MimeType"))
            types = value.split(u';', Qt::SkipEmptyParts);
    }
    // An entry whose program is not installed is no thumbnailer.
    if (exec.isEmpty() ||
        (!tryExec.isEmpty() && QStandardPaths::findExecutable(tryExec).isEmpty() && !QFile::exists(tryExec)))
        return;
    for (const QString& type : types)
        if (!commands.contains(type)) commands.insert(type, exec);
}

QString DesktopThumbnailers::command(const QString& mime) const {
    if (const auto found = commands.constFind(mime); found != commands.constEnd()) return *found;
    const QMimeType type = QMimeDatabase().mimeTypeForName(mime);
    for (const QString& alias : type.aliases())
        if (const auto found = commands.constFind(alias); found != commands.constEnd()) return *found;
    return {};
}

std::vector<QByteArray> DesktopThumbnailers::arguments(const QString& command, const QString& path,
                                                       const QByteArray& output, int side) {
    const QByteArray bytes = NativePath::encode(path);
    const QByteArray uri = ThumbnailCache::uri(path);
    std::vector<QByteArray> argv;
    for (const QString& word : splitCommand(command))
        argv.push_back(fillField(word, bytes, uri, output, side));
    return argv;
}

bool DesktopThumbnailers::run(const std::vector<QByteArray>& argv, int limitMs) {
    if (argv.empty()) return false;
    std::vector<char*> args;
    for (const QByteArray& arg : argv)
        args.push_back(const_cast<char*>(arg.constData()));
    args.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int fd = 0; fd <= 2; ++fd)
        posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", fd == 0 ? O_RDONLY : O_WRONLY, 0);
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP); // so a hung one goes with its children
    posix_spawnattr_setpgroup(&attr, 0);
    pid_t pid = 0;
    const int failed = posix_spawnp(&pid, args[0], &actions, &attr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);
    if (failed) return false;
    int status = 0;
    const timespec step{0, 5'000'000};
    for (int waited = 0; waited < limitMs; waited += 5) {
        const pid_t done = waitpid(pid, &status, WNOHANG);
        if (done == pid) return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (done < 0 && errno != EINTR) return false;
        nanosleep(&step, nullptr);
    }
    kill(-pid, SIGKILL);
    waitpid(pid, &status, 0);
    return false;
}

QImage DesktopThumbnailers::make(const QString& path, const QString& mime, int side) const {
    const QString command = this->command(mime);
    if (command.isEmpty()) return {};
    QByteArray folder = QDir::tempPath().toLocal8Bit() + "/orvane-thumb-XXXXXX";
    if (!mkdtemp(folder.data())) return {};
    const QByteArray output = folder + "/out.png";
    QImage image;
    if (run(arguments(command, path, output, side), timeoutMs)) {
        if (const auto file = MediaFile::open(NativePath::decode(output)))
            image = QImageReader(file.get()).read();
    }
    ::unlink(output.constData());
    ::rmdir(folder.constData());
    if (image.width() > side || image.height() > side)
        image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

} // namespace orvane
