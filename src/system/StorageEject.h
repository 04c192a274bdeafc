#pragma once

#include <QString>

namespace orvane {

struct StorageVolume;

// Unmounts a volume and ejects its drive when the drive can be ejected: through UDisks2 on the
// system bus where it runs, else through fusermount or umount, the way a desktop's eject does.
namespace StorageEject {
// Blocks until done; empty on success, else a sentence saying why not.
QString run(const StorageVolume& volume);
// The sentence for what the system said: a busy volume and a refusal get words of their own.
QString reason(const QString& systemText);
} // namespace StorageEject

} // namespace orvane
