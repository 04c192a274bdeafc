#include "navigation/SidebarLocations.h"
#include "platform/DesktopTrash.h"
#include "platform/NativePath.h"

#include "platform/Platform.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>
#include <unistd.h>

namespace orvane {

namespace {

QString userName() {
    QString name = qEnvironmentVariable("USER");
    if (name.isEmpty()) name = QDir::home().dirName();
    return name;
}

// Kernel and session bookkeeping, not places a person keeps files.
bool isVirtualType(const QString& type) {
    static const QSet<QString> types = {
        QStringLiteral("tmpfs"),
        QStringLiteral("devtmpfs"),
        QStringLiteral("proc"),
        QStringLiteral("sysfs"),
        QStringLiteral("cgroup"),
        QStringLiteral("cgroup2"),
        QStringLiteral("devpts"),
        QStringLiteral("mqueue"),
        QStringLiteral("hugetlbfs"),
        QStringLiteral("debugfs"),
        QStringLiteral("tracefs"),
        QStringLiteral("securityfs"),
        QStringLiteral("pstore"),
        QStringLiteral("bpf"),
        QStringLiteral("configfs"),
        QStringLiteral("fusectl"),
        QStringLiteral("autofs"),
        QStringLiteral("binfmt_misc"),
        QStringLiteral("efivarfs"),
        QStringLiteral("ramfs"),
        QStringLiteral("squashfs"),
        QStringLiteral("overlay"),
        QStringLiteral("nsfs"),
        QStringLiteral("rpc_pipefs"),
        QStringLiteral("nfsd"),
        QStringLiteral("selinuxfs"),
        QStringLiteral("fuse.gvfsd-fuse"),
        QStringLiteral("fuse.portal"),
        QStringLiteral("fuse.lxcfs"),
        QStringLiteral("fuse.snapfuse"),
        QStringLiteral("fuse.xdg-document-portal"),
    };
    return types.contains(type);
}

bool isSystemFolder(const QString& root) {
    static const char* const system[] = {"/proc", "/sys", "/dev", "/run", "/boot", "/snap",   "/var",
                                         "/usr",  "/etc", "/tmp", "/opt", "/srv",  "/System", "/private"};
    for (const char* s : system) {
        const QLatin1String prefix(s);
        if (root == prefix || root.startsWith(prefix + u'/')) return true;
    }
    return false;
}

bool inside(const QString& path, const QString& folder) {
    return path == folder || path.startsWith(folder.endsWith(u'/') ? folder : folder + u'/');
}

QString lastComponent(const QString& path) {
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

} // namespace

SidebarLocations SidebarLocations::current(bool phoneConnected, const QString& phoneState) {
    SidebarLocations l;
    l.rootWord = Platform::instance().word(PlatformWord::RootVolume);
    l.home = QDir::homePath();
    if (QFileInfo(QStringLiteral("/Applications")).isDir()) l.applications = QStringLiteral("/Applications");
    const QString user = userName();
    l.volumeFolders = {QStringLiteral("/media/") + user, QStringLiteral("/run/media/") + user,
                       QStringLiteral("/Volumes")};
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid()) continue;
        const QString root = volume.rootPath();
        const bool writable = !volume.isReadOnly() && access(NativePath::encode(root).constData(), W_OK) == 0;
        l.mounts.append({root, QString::fromLatin1(volume.fileSystemType()), writable});
    }
    l.phoneConnected = phoneConnected;
    l.phoneState = phoneState;
    l.trashFull = !DesktopTrash::isEmpty();
    return l;
}

bool SidebarLocations::isVolume(const Mount& mount) const {
    if (mount.root == QLatin1String("/")) return false;
    const QString parent = QFileInfo(mount.root).path();
    if (volumeFolders.contains(parent)) return lastComponent(mount.root) != rootWord;
    return mount.writable && !isVirtualType(mount.type) && !isSystemFolder(mount.root) &&
           !inside(home, mount.root);
}

QList<SidebarPlace> SidebarLocations::places() const {
    QList<SidebarPlace> places;
    if (!applications.isEmpty())
        places.append({QStringLiteral("Applications"), applications, QStringLiteral("square.grid.2x2")});
    places.append({rootWord, QStringLiteral("/"), QStringLiteral("internaldrive")});
    QSet<QString> seen;
    for (const Mount& mount : mounts) {
        const QString root = QDir::cleanPath(mount.root);
        if (seen.contains(root) || !isVolume({root, mount.type, mount.writable})) continue;
        seen.insert(root);
        places.append({lastComponent(root), root, QStringLiteral("externaldrive")});
    }
    places.append({QStringLiteral("Trash"), QStringLiteral("trash:///"),
                   trashFull ? QStringLiteral("trash.full") : QStringLiteral("trash")});
    if (phoneConnected)
        places.append({phoneState.isEmpty() ? QStringLiteral("Android USB")
                                            : QStringLiteral("Android USB (") + phoneState + u')',
                       QStringLiteral("android://phone"), QStringLiteral("iphone")});
    return places;
}

} // namespace orvane
