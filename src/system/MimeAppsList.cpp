#include "system/MimeAppsList.h"

#include "platform/NativePath.h"

#include <QDir>
#include <QFileInfo>
#include <QList>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
const QByteArray group = "[Default Applications]";

struct Line {
    qsizetype start, end; // end past the newline
};

QList<Line> linesOf(const QByteArray& content) {
    QList<Line> lines;
    for (qsizetype at = 0; at < content.size();) {
        const qsizetype newline = content.indexOf('\n', at);
        const qsizetype end = newline < 0 ? content.size() : newline + 1;
        lines.append({at, end});
        at = end;
    }
    return lines;
}

struct Found {
    qsizetype header = -1; // index of the last [Default Applications] line
    qsizetype line = -1;   // index of the last line of the type in that group
};

Found find(const QByteArray& content, const QList<Line>& lines, const QByteArray& type) {
    Found found;
    bool inGroup = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArray text = content.mid(lines[i].start, lines[i].end - lines[i].start);
        const QByteArray trimmed = text.trimmed();
        if (trimmed.startsWith('[')) {
            inGroup = trimmed == group;
            if (inGroup) found.header = i;
            continue;
        }
        const qsizetype equals = text.indexOf('=');
        if (!inGroup || trimmed.startsWith('#') || equals < 0 || text.left(equals).trimmed() != type)
            continue;
        found.line = i;
    }
    return found;
}

QString errorText(int error) {
    return QString::fromLocal8Bit(std::strerror(error)) + QStringLiteral(" [errno %1]").arg(error);
}
} // namespace

// By the variables themselves, as every other reader of the file goes.
QString MimeAppsList::userFile() {
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    return (config.startsWith('/') ? NativePath::decode(config)
                                   : QDir::homePath() + QStringLiteral("/.config")) +
           QStringLiteral("/mimeapps.list");
}

QByteArray MimeAppsList::lineIn(const QByteArray& content, const QByteArray& type) {
    const QList<Line> lines = linesOf(content);
    const Found found = find(content, lines, type);
    if (found.line < 0) return {};
    const Line line = lines[found.line];
    return content.mid(line.start, line.end - line.start).chopped(content[line.end - 1] == '\n' ? 1 : 0);
}

QByteArray MimeAppsList::valueOf(const QByteArray& line) {
    const qsizetype equals = line.indexOf('=');
    return equals < 0 ? QByteArray() : line.mid(equals + 1).trimmed();
}

QByteArray MimeAppsList::withLine(const QByteArray& content, const QByteArray& type,
                                  const QByteArray& value) {
    const QList<Line> lines = linesOf(content);
    const Found found = find(content, lines, type);
    QByteArray result = content;
    if (found.line >= 0 && !value.isEmpty()) {
        const Line line = lines[found.line];
        const qsizetype end = content[line.end - 1] == '\n' ? line.end - 1 : line.end;
        return result.replace(line.start, end - line.start, value);
    }
    if (found.line >= 0) {
        const Line line = lines[found.line];
        result.remove(line.start, line.end - line.start);
        // A group left with nothing after its header was the one added for this line.
        const Line header = lines[found.header];
        if (found.header == found.line - 1 && line.end == content.size()) result.truncate(header.start);
        return result;
    }
    if (value.isEmpty()) return result;
    const QByteArray entry = value + '\n';
    if (found.header < 0) {
        if (!result.isEmpty() && !result.endsWith('\n')) result += '\n';
        return result + group + '\n' + entry;
    }
    const qsizetype after = lines[found.header].end;
    if (!result.mid(lines[found.header].start, after - lines[found.header].start).endsWith('\n'))
        return result + '\n' + entry;
    return result.insert(after, entry);
}

std::optional<QByteArray> MimeAppsList::readLine(const QString& file, const QByteArray& type) {
    const QByteArray path = NativePath::encode(file);
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT ? std::optional<QByteArray>(QByteArray()) : std::nullopt;
    QByteArray content;
    char buffer[65536];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0)
        content.append(buffer, n);
    ::close(fd);
    if (n < 0) return std::nullopt;
    return lineIn(content, type);
}

QString MimeAppsList::writeLine(const QString& file, const QByteArray& type, const QByteArray& value) {
    const QByteArray path = NativePath::encode(file);
    QByteArray content;
    struct stat st {};
    const bool existed = ::stat(path.constData(), &st) == 0;
    if (existed) {
        // Read-only by the person's choice, even where the superuser could write it.
        if ((st.st_mode & 0222) == 0) return errorText(EACCES);
        if (::access(path.constData(), W_OK) != 0) return errorText(errno);
        const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) return errorText(errno);
        char buffer[65536];
        ssize_t n;
        while ((n = ::read(fd, buffer, sizeof buffer)) > 0)
            content.append(buffer, n);
        ::close(fd);
    }
    const QByteArray changed = withLine(content, type, value);
    if (changed == content) return {};
    if (changed.isEmpty() && existed) return ::unlink(path.constData()) == 0 ? QString() : errorText(errno);
    QDir().mkpath(QFileInfo(file).absolutePath());
    QByteArray temporary = path + ".XXXXXX";
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) return errorText(errno);
    const bool written = ::write(fd, changed.constData(), size_t(changed.size())) == changed.size() &&
                         ::fchmod(fd, existed ? st.st_mode & 07777 : 0644) == 0 && ::fsync(fd) == 0;
    const int error = errno;
    ::close(fd);
    if (!written || ::rename(temporary.constData(), path.constData()) != 0) {
        const int failed = written ? errno : error;
        ::unlink(temporary.constData());
        return errorText(failed);
    }
    return {};
}

} // namespace orvane
