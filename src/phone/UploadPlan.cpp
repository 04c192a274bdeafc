#include "phone/UploadPlan.h"

#include "phone/PhoneTransfer.h"

#include <QFile>
#include <QStringDecoder>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace orvane {

namespace {
using Dir = std::unique_ptr<DIR, int (*)(DIR*)>;

QString unsupported(const QString& name) {
    return QStringLiteral("Unsupported or inaccessible source: ") + name;
}

QByteArray lastComponent(const QByteArray& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray trimmed(QByteArray path) {
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path;
}

class Walk {
public:
    std::optional<QString> error;

    bool visit(const QByteArray& path, UploadNode& out);

private:
    bool readFolder(UploadNode& folder);
};

// Symbolic links are refused rather than followed: what they point at isn't part of what was chosen.
bool Walk::visit(const QByteArray& path, UploadNode& out) {
    out.path = path;
    const std::optional<QString> name = exactText(lastComponent(path));
    out.name = name.value_or(QFile::decodeName(lastComponent(path)));
    struct stat status;
    if (!name || !PhoneTransfer::valid(*name) || ::lstat(path.constData(), &status) != 0 ||
        S_ISLNK(status.st_mode)) {
        error = unsupported(out.name);
        return false;
    }
    if (S_ISDIR(status.st_mode)) {
        out.folder = true;
        return readFolder(out);
    }
    if (!S_ISREG(status.st_mode)) {
        error = QStringLiteral("Only regular files and folders can be sent.");
        return false;
    }
    // The bridge is handed the path as text, so all of it must survive that.
    if (!exactText(path)) {
        error = unsupported(out.name);
        return false;
    }
    return true;
}

bool Walk::readFolder(UploadNode& folder) {
    Dir dir(::opendir(folder.path.constData()), &::closedir);
    if (!dir) {
        error = QStringLiteral("Cannot read ") + folder.name;
        return false;
    }
    while (const dirent* entry = ::readdir(dir.get())) {
        const char* n = entry->d_name;
        if (n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0))) continue;
        UploadNode child;
        const QByteArray base = folder.path == "/" ? QByteArray() : folder.path;
        if (!visit(base + '/' + n, child)) return false;
        folder.children.append(std::move(child));
    }
    return true;
}
} // namespace

std::optional<QString> exactText(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    if (decoder.hasError() || text.contains(QChar(0))) return std::nullopt;
    return text;
}

UploadPlan UploadPlan::read(const QList<QByteArray>& paths) {
    UploadPlan plan;
    Walk walk;
    for (const QByteArray& path : paths) {
        UploadNode node;
        if (!walk.visit(trimmed(path), node)) {
            plan.roots.clear();
            plan.error = walk.error;
            return plan;
        }
        plan.roots.append(std::move(node));
    }
    return plan;
}

} // namespace orvane
