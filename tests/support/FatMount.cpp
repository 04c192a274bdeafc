#include "FatMount.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <unistd.h>

namespace orvane::test {

namespace {
bool run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

QString tool(const char* name) {
    return QStandardPaths::findExecutable(QLatin1String(name),
                                          {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin"),
                                           QStringLiteral("/usr/bin"), QStringLiteral("/bin")});
}
} // namespace

FatMount::FatMount() : dir(QDir::tempPath() + QStringLiteral("/orvane-fat-XXXXXX")) {
    const QString mkfs = tool("mkfs.vfat"), fusefat = tool("fusefat");
    if (access("/dev/fuse", R_OK | W_OK) != 0) {
        skipReason = QStringLiteral("FUSE is not available here (/dev/fuse)");
    } else if (mkfs.isEmpty() || fusefat.isEmpty()) {
        skipReason = QStringLiteral("FAT tools missing: install fusefat and dosfstools");
    } else if (!QDir(dir.path()).mkdir(QStringLiteral("mnt")) ||
               !run(QStringLiteral("truncate"),
                    {QStringLiteral("-s"), QStringLiteral("32M"), path() + ".img"}) ||
               !run(mkfs, {path() + ".img"})) {
        skipReason = QStringLiteral("could not make a FAT image");
    } else if (!run(fusefat, {QStringLiteral("-o"), QStringLiteral("rw+"), path() + ".img", path()})) {
        skipReason = QStringLiteral("fusefat could not mount the image");
    }
}

FatMount::~FatMount() {
    if (!mounted()) return;
    for (const char* unmount : {"fusermount3", "fusermount"}) {
        const QString program = tool(unmount);
        if (!program.isEmpty() && run(program, {QStringLiteral("-u"), path()})) return;
    }
    run(QStringLiteral("umount"), {path()});
}

QString FatMount::path(const QString& relative) const {
    const QString root = dir.path() + QStringLiteral("/mnt");
    return relative.isEmpty() ? root : root + u'/' + relative;
}

} // namespace orvane::test
