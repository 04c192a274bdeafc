#pragma once

#include "platform/MountTable.h"
#include "platform/VolumeFigures.h"

#include <QUrl>
#include <optional>
#include <vector>

namespace orvane {

// One mounted volume as the storage overview shows it.
struct StorageVolume {
    QUrl url;
    QString path;   // NativePath text of the mount point
    QString source; // what is mounted there, for unmounting
    QString type;
    QString name;
    std::optional<qint64> total;
    std::optional<qint64> free;
    std::optional<qint64> inUse; // as the file system counts it, when it says
    bool local = true;
    bool internalDisk = false;
    bool ejectable = false;

    // Never below 0: a volume may report more free space than it holds.
    std::optional<qint64> used() const;
    // The symbol of its kind: "internaldrive", "externaldrive" or "network".
    QString symbol() const;

    // The volumes a person would recognise, the root first and once. Slow: it asks every volume for
    // its figures, giving up on one that does not answer within `waitMs`; one the system refuses at
    // once is left out.
    static std::vector<StorageVolume> read(int waitMs = 2000);
    // The same from a given table, without figures.
    static std::vector<StorageVolume> fromMounts(const std::vector<MountPoint>& mounts);
    // Pseudo file systems and the system's own mounts are internals nobody browses.
    static bool recognisable(const MountPoint& mount);
    static bool network(const QString& type);
    // The root first, then by name in natural order.
    static void sort(std::vector<StorageVolume>& volumes);
};

} // namespace orvane
