#include "fileops/FileAliases.h"

#include "fileops/FileTrash.h"
#include "platform/NativePath.h"

#include <QDir>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
QString baseName(const QString& path) {
    return path.section(u'/', -1);
}

// Tries the names in turn until the kernel takes one; EEXIST is the only reason to go on.
QString makeLink(int folder, const QByteArray& target, const QString& name, QString& error) {
    for (int n = 1;; ++n) {
        const QString candidate = name + QStringLiteral(" - Shortcut") +
                                  (n == 1 ? QString() : QStringLiteral(" (%1)").arg(n)) +
                                  QStringLiteral(".alias");
        if (::symlinkat(target.constData(), folder, NativePath::encode(candidate).constData()) == 0)
            return candidate;
        if (errno != EEXIST) {
            error = QString::fromLocal8Bit(std::strerror(errno));
            return {};
        }
    }
}
} // namespace

QString FileAliases::linkText(const QString& item, const QString& folder) {
    const QString clean = QDir::cleanPath(item), into = QDir::cleanPath(folder);
    const QString prefix = into == QLatin1String("/") ? into : into + u'/';
    return clean.startsWith(prefix) && clean != into ? clean.mid(prefix.size()) : clean;
}

FileAliases::Result FileAliases::create(const QStringList& items, const QString& folder) {
    Result result;
    const int dir = ::open(NativePath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const QString folderError = dir < 0 ? QString::fromLocal8Bit(std::strerror(errno)) : QString();
    for (const QString& item : items) {
        const QString name = baseName(QDir::cleanPath(item));
        QString error = folderError;
        struct stat facts;
        if (error.isEmpty() && (name.isEmpty() || ::lstat(NativePath::encode(item).constData(), &facts) != 0))
            error = QString::fromLocal8Bit(std::strerror(name.isEmpty() ? EINVAL : errno));
        const QString made = error.isEmpty()
                                 ? makeLink(dir, NativePath::encode(linkText(item, folder)), name, error)
                                 : QString();
        if (made.isEmpty())
            result.failures << NativePath::display(name.isEmpty() ? item : name) + QStringLiteral(": ") +
                                   error;
        else
            result.created << QDir::cleanPath(folder) + u'/' + made;
    }
    if (dir >= 0) ::close(dir);
    return result;
}

FileUndo FileAliases::undoStep(const QStringList& created) {
    auto next = std::make_shared<qsizetype>(0);
    return [created, next](QString& error) {
        for (; *next < created.size(); ++*next) {
            QString trashed;
            if (!FileTrash::moveToTrash(created[*next], trashed, error)) return false;
        }
        return true;
    };
}

} // namespace orvane
