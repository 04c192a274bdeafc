#include "system/StorageVolume.h"

#include "core/NaturalOrder.h"
#include "platform/NativePath.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <algorithm>

namespace orvane {

namespace {
bool oneOf(const QString& text, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&](const char* w) { return text == QLatin1String(w); });
}

bool under(const QString& path, const char* root) {
    const QLatin1String r(root);
    return path == r || (path.startsWith(r) && path.at(r.size()) == u'/');
}

// The disk behind a device node, as the kernel files it: one on USB or marked removable is not
// inside the machine.
bool removableDevice(const QString& source) {
    const QString name = NativePath::canonical(source).section(u'/', -1);
    if (name.isEmpty()) return false;
    const QString node = NativePath::canonical(QStringLiteral("/sys/class/block/") + name);
    if (node.isEmpty()) return false;
    if (node.contains(QLatin1String("/usb"))) return true;
    const QString disk =
        QFile::exists(node + QStringLiteral("/partition")) ? node.section(u'/', 0, -2) : node;
    QFile flag(disk + QStringLiteral("/removable"));
    return flag.open(QIODevice::ReadOnly) && flag.readAll().trimmed() == "1";
}

// udev files each labelled device under its label, with unsafe bytes as \xNN.
QString labelOf(const QString& source) {
    const QString device = NativePath::canonical(source);
    if (device.isEmpty()) return {};
    const QDir labels(QStringLiteral("/dev/disk/by-label"));
    for (const QString& label : labels.entryList(QDir::System | QDir::Files | QDir::NoDotAndDotDot)) {
        if (NativePath::canonical(labels.filePath(label)) != device) continue;
        QByteArray bytes = label.toUtf8();
        for (qsizetype at; (at = bytes.indexOf("\\x")) >= 0 && at + 4 <= bytes.size();)
            bytes.replace(at, 4, QByteArray(1, char(bytes.mid(at + 2, 2).toInt(nullptr, 16))));
        return NativePath::decode(bytes);
    }
    return {};
}

StorageVolume volumeOf(const MountPoint& m) {
    StorageVolume v;
    v.path = m.path;
    v.url = QUrl::fromLocalFile(m.path);
    v.source = m.source;
    v.type = m.type;
    v.local = !StorageVolume::network(m.type);
    const bool device = m.source.startsWith(QLatin1String("/dev/"));
    const bool fuse = m.type.startsWith(QLatin1String("fuse"));
    const bool removable = device && removableDevice(m.source);
    v.internalDisk = m.path == u'/' || (v.local && !fuse && !removable);
    v.ejectable = m.path != u'/' && (removable || (fuse && v.local));
    if (m.path == u'/') v.name = Platform::instance().word(PlatformWord::RootVolume);
    if (v.name.isEmpty() && device) v.name = labelOf(m.source);
    if (v.name.isEmpty()) v.name = m.path.section(u'/', -1);
    return v;
}
} // namespace

std::optional<qint64> StorageVolume::used() const {
    if (inUse) return std::max<qint64>(0, *inUse);
    if (!total || !free) return std::nullopt;
    return std::max<qint64>(0, *total - *free);
}

QString StorageVolume::symbol() const {
    if (internalDisk) return QStringLiteral("internaldrive");
    return local ? QStringLiteral("externaldrive") : QStringLiteral("network");
}

bool StorageVolume::network(const QString& type) {
    return oneOf(type, {"nfs", "nfs4", "cifs", "smb3", "smbfs", "ncpfs", "afs", "ceph", "glusterfs", "davfs",
                        "fuse.sshfs", "fuse.rclone", "fuse.davfs2", "fuse.s3fs", "fuse.curlftpfs"});
}

bool StorageVolume::recognisable(const MountPoint& m) {
    if (m.path == u'/') return true;
    if (oneOf(m.type,
              {"proc",     "sysfs",           "devtmpfs",    "devpts",     "cgroup",        "cgroup2",
               "mqueue",   "debugfs",         "tracefs",     "securityfs", "pstore",        "bpf",
               "configfs", "fusectl",         "hugetlbfs",   "autofs",     "binfmt_misc",   "efivarfs",
               "nsfs",     "rpc_pipefs",      "squashfs",    "ramfs",      "selinuxfs",     "overlay",
               "aufs",     "fuse.gvfsd-fuse", "fuse.portal", "fuse.lxcfs", "fuse.snapfuse", "devfs",
               "nullfs"}))
        return false;
    if (m.path.startsWith(QLatin1String("/run/media/"))) return true;
    for (const char* root : {"/proc", "/sys", "/dev", "/run", "/boot", "/efi", "/snap", "/usr", "/etc",
                             "/var/lib", "/var/snap", "/var/cache", "/var/log", "/System"})
        if (under(m.path, root)) return false;
    // /tmp itself is the system's scratch space; what a person mounts below it is theirs.
    return !oneOf(m.path, {"/tmp", "/var/tmp", "/var"});
}

// A later mount on the same path hides the earlier one; a second mount of one file system (a bind
// mount, the root seen twice) counts once, and the root comes first.
std::vector<StorageVolume> StorageVolume::fromMounts(const std::vector<MountPoint>& mounts) {
    QHash<QString, size_t> lastAt;
    for (size_t i = 0; i < mounts.size(); ++i)
        lastAt[mounts[i].path] = i;
    std::vector<size_t> order;
    if (lastAt.contains(QStringLiteral("/"))) order.push_back(lastAt.value(QStringLiteral("/")));
    for (size_t i = 0; i < mounts.size(); ++i)
        if (lastAt.value(mounts[i].path) == i && mounts[i].path != u'/') order.push_back(i);
    std::vector<StorageVolume> volumes;
    QSet<QString> devices;
    for (size_t i : order) {
        const MountPoint& m = mounts[i];
        if (!recognisable(m) || devices.contains(m.device)) continue;
        devices.insert(m.device);
        volumes.push_back(volumeOf(m));
    }
    return volumes;
}

void StorageVolume::sort(std::vector<StorageVolume>& volumes) {
    const NaturalOrder& order = NaturalOrder::shared();
    std::stable_sort(volumes.begin(), volumes.end(), [&](const StorageVolume& a, const StorageVolume& b) {
        if ((a.path == u'/') != (b.path == u'/')) return a.path == u'/';
        return order.compare(a.name, b.name) < 0;
    });
}

std::vector<StorageVolume> StorageVolume::read(int waitMs) {
    std::vector<StorageVolume> volumes = fromMounts(MountTable::current());
    std::vector<QString> paths;
    for (const StorageVolume& v : volumes)
        paths.push_back(v.path);
    const auto figures = VolumeFigures::read(paths, waitMs);
    std::vector<StorageVolume> readable;
    for (size_t i = 0; i < volumes.size(); ++i) {
        if (figures[i] && figures[i]->unreadable) continue;
        if (figures[i]) {
            volumes[i].total = figures[i]->total;
            volumes[i].free = figures[i]->available;
            volumes[i].inUse = figures[i]->used;
        }
        readable.push_back(std::move(volumes[i]));
    }
    sort(readable);
    return readable;
}

} // namespace orvane
