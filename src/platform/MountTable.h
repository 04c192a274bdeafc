#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace orvane {

// One line of the kernel's mount table. Paths are NativePath text, so a mount point whose name is
// not UTF-8 still names the right folder.
struct MountPoint {
    QString path;
    QString type;   // "ext4", "tmpfs", "fuse.sshfs"
    QString source; // "/dev/sda1", "server:/export", "tmpfs"
    QString device; // "major:minor", the same for every mount of one file system
    QString options;
};

namespace MountTable {
// The lines of /proc/self/mountinfo, with the kernel's octal escapes (\040 space, \011 tab, \012
// line feed, \134 backslash) turned back into their bytes. A line it cannot read is left out.
std::vector<MountPoint> parse(const QByteArray& mountinfo);
QByteArray unescape(const QByteArray& field);
// What is mounted now; empty when the table cannot be read.
std::vector<MountPoint> current();
} // namespace MountTable

} // namespace orvane
