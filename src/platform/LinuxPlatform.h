#pragma once

#include "platform/Platform.h"

namespace orvane {

// Dot files are hidden; there are no packages; birth times come from statx where the file system keeps them.
class LinuxPlatform final : public Platform {
public:
    bool listFolder(const QString& path, bool includeHidden, const ItemSink& sink,
                    QString& error) const override;
    bool readItem(const QString& path, RawItem& out) const override;
    bool listSubfolders(const QString& path, const FolderSink& sink, QString& error) const override;
    bool isPlainFolder(const QString& path) const override;
    QString word(PlatformWord word) const override;
    // The attributes of `name` in the open folder `dirfd`, for walkers that already hold the folder.
    static bool readItemAt(int dirfd, const char* name, RawItem& out);
};

} // namespace orvane
