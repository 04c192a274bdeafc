#pragma once

#include <QString>
#include <QTemporaryDir>

namespace orvane::test {

// A small FAT file system, mounted through FUSE for one test and unmounted with the object. Where the
// machine has no FUSE or no FAT tools, `skipReason` says why and nothing is mounted.
class FatMount {
public:
    FatMount();
    ~FatMount();
    bool mounted() const { return skipReason.isEmpty(); }
    QString path(const QString& relative = {}) const;
    QString skipReason;

private:
    QTemporaryDir dir;
};

} // namespace orvane::test

// Skips the calling test, with the reason, when the mount could not be made.
#define ORVANE_REQUIRE_FAT(mount)                                                                            \
    if (!(mount).mounted()) QSKIP(qPrintable((mount).skipReason))
