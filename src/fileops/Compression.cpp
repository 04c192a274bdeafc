#include "fileops/Compression.h"

#include "fileops/FileTree.h"
#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>
#include <cerrno>
#include <sys/stat.h>

namespace orvane {

namespace {
QString parentOf(const QString& path) {
    return QFileInfo(QDir::cleanPath(path)).path();
}
} // namespace

QString Compression::stem(const QStringList& paths) {
    return paths.size() == 1 ? QFileInfo(QDir::cleanPath(paths.front())).fileName()
                             : QStringLiteral("Archive");
}

QString Compression::candidate(const QString& stem, int n) {
    return stem + (n == 1 ? QString() : QStringLiteral(" (%1)").arg(n)) + QStringLiteral(".zip");
}

QString Compression::startText(int count) {
    return QStringLiteral("Compressing %1 item(s)…").arg(count);
}

QString Compression::doneText(const QString& archive) {
    return QStringLiteral("Created ") + NativePath::display(QFileInfo(archive).fileName()) +
           QStringLiteral(" · Ctrl+Z to undo");
}

void Compression::cancel() {
    stopped = true;
    zip.terminate();
}

Compression::Outcome Compression::run(const QStringList& paths) {
    Outcome out;
    if (paths.isEmpty()) {
        out.error = QStringLiteral("Select an item to compress.");
        return out;
    }
    const QString folder = parentOf(paths.front());
    for (const QString& path : paths)
        if (parentOf(path) != folder) {
            out.error = QStringLiteral("Select items from the same folder.");
            return out;
        }
    const QString staged =
        folder + u'/' + QLatin1String(stagingPrefix) + QUuid::createUuid().toString(QUuid::WithoutBraces);
    if (::mkdir(NativePath::encode(staged).constData(), 0700) != 0) {
        out.error = FileTree::systemText(errno);
        return out;
    }
    out.error = pack(folder, paths, staged);
    if (out.error.isEmpty() && !stopped) out.archive = place(staged, folder, stem(paths), out.error);
    QString ignored;
    FileTree::remove(staged, ignored);
    out.cancelled = stopped;
    if (out.cancelled) out.error.clear();
    return out;
}

// "-MM": without it zip exits 0 when one of several items vanished, and the archive lacks it.
QString Compression::pack(const QString& folder, const QStringList& paths, const QString& staged) {
    QList<QByteArray> args = {"-r", "-y", "-q", "-MM", NativePath::encode(staged) + "/archive.zip", "--"};
    for (const QString& path : paths)
        args << "./" + NativePath::encode(QFileInfo(QDir::cleanPath(path)).fileName());
    if (!ChildProcess::available("zip")) return QStringLiteral("The zip program is not installed.");
    QString error;
    if (stopped) return {};
    if (!zip.start("zip", args, NativePath::encode(folder), error)) return error;
    if (stopped) zip.terminate(); // asked while it started
    QByteArray text;
    const int status = zip.wait(text);
    if (status == 0 || stopped) return {};
    const QString said = QString::fromUtf8(text).trimmed();
    return !said.isEmpty()
               ? said
               : QStringLiteral("The selected items could not be compressed (code %1).").arg(status);
}

// The kernel decides whether a name is free at the rename itself: one taken meanwhile moves on to the next.
QString Compression::place(const QString& staged, const QString& folder, const QString& stem,
                           QString& error) {
    const QByteArray from = NativePath::encode(staged) + "/archive.zip";
    return FileTree::placeNumbered(
        from, folder, [&](int n) { return candidate(stem, n); }, error);
}

} // namespace orvane
