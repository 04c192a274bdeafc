#include "system/StorageEject.h"

#include "platform/NativePath.h"
#include "system/StorageVolume.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QProcess>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <sys/mount.h>

namespace orvane {

namespace {
const QString udisks = QStringLiteral("org.freedesktop.UDisks2");

QString runTool(const QString& program, const QStringList& arguments) {
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) return QStringLiteral("%1 is not installed.").arg(program);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(path, arguments);
    if (!process.waitForFinished(30000)) return QStringLiteral("The volume did not answer.");
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) return {};
    return QString::fromLocal8Bit(process.readAll()).trimmed();
}

// Empty when UDisks2 does not know the device; "ok" when it ejected; else the error's text.
QString viaUdisks(const StorageVolume& volume, bool& handled) {
    handled = false;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected() || !volume.source.startsWith(QLatin1String("/dev/")) ||
        !bus.interface()->isServiceRegistered(udisks))
        return {};
    QDBusInterface manager(udisks, QStringLiteral("/org/freedesktop/UDisks2/Manager"),
                           udisks + QStringLiteral(".Manager"), bus);
    const QDBusReply<QList<QDBusObjectPath>> found = manager.call(
        QStringLiteral("ResolveDevice"), QVariantMap{{QStringLiteral("path"), volume.source}}, QVariantMap{});
    if (!found.isValid() || found.value().isEmpty()) return {};
    handled = true;
    const QString object = found.value().first().path();
    QDBusInterface filesystem(udisks, object, udisks + QStringLiteral(".Filesystem"), bus);
    const QDBusMessage unmounted = filesystem.call(QStringLiteral("Unmount"), QVariantMap{});
    if (unmounted.type() == QDBusMessage::ErrorMessage)
        return unmounted.errorName() + u' ' + unmounted.errorMessage();
    QDBusInterface block(udisks, object, udisks + QStringLiteral(".Block"), bus);
    const QString drive = block.property("Drive").value<QDBusObjectPath>().path();
    QDBusInterface driveInterface(udisks, drive, udisks + QStringLiteral(".Drive"), bus);
    if (drive.size() > 1 && driveInterface.property("Ejectable").toBool())
        driveInterface.call(QStringLiteral("Eject"), QVariantMap{}); // unmounted is what matters
    return {};
}
// The kernel call takes the path's exact bytes; only where it refuses an ordinary user's own FUSE
// mount does the setuid helper get the path as text.
QString unmount(const StorageVolume& volume) {
#ifdef __APPLE__
    if (::unmount(NativePath::encode(volume.path).constData(), 0) == 0) return {};
#else
    if (umount2(NativePath::encode(volume.path).constData(), 0) == 0) return {};
#endif
    const int error = errno;
    const bool fuse = volume.type.startsWith(QLatin1String("fuse"));
    if (error != EPERM || !fuse || NativePath::holdsRawBytes(volume.path))
        return QString::fromLocal8Bit(strerror(error));
    const QString tried = runTool(QStringLiteral("fusermount3"), {QStringLiteral("-u"), volume.path});
    return tried.contains(QLatin1String("not installed"))
               ? runTool(QStringLiteral("fusermount"), {QStringLiteral("-u"), volume.path})
               : tried;
}
} // namespace

QString StorageEject::reason(const QString& text) {
    const QString t = text.toLower();
    if (t.contains(QLatin1String("busy")) || t.contains(QLatin1String("in use")))
        return QStringLiteral(
            "The volume is in use. Close the files and programs that use it, then try again.");
    if (t.contains(QLatin1String("notauthorized")) || t.contains(QLatin1String("permission denied")) ||
        t.contains(QLatin1String("not permitted")) || t.contains(QLatin1String("superuser")) ||
        t.contains(QLatin1String("not allowed")))
        return QStringLiteral("You are not allowed to eject this volume.");
    return text.isEmpty() ? QStringLiteral("The volume could not be ejected.") : text;
}

QString StorageEject::run(const StorageVolume& volume) {
    bool handled = false;
    QString error = viaUdisks(volume, handled);
    if (!handled) error = unmount(volume);
    return error.isEmpty() ? QString() : reason(error);
}

} // namespace orvane
