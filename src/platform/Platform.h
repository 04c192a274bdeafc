#pragma once

#include <QDateTime>
#include <QString>
#include <functional>

namespace orvane {

// Texts that name the host system itself; everything else in the program is verbatim.
// ThisComputer starts a title ("This Mac"), ThisComputerInText stands inside one ("this Mac").
// An empty word is a thing the host does not have (FullDiskAccess, ModifierNote): leave it out.
enum class PlatformWord {
    RootVolume,
    ShowInFileManager,
    CopyToComputer,
    FileManager,
    PropertiesNote,
    ThisComputer,
    ThisComputerInText,
    FilesCopiedToComputer,
    FullDiskAccess,
    ModifierNote,
    MakeAlias,
    QuickLook
};

// What one stat-like request tells about an item, before it becomes an Entry.
struct RawItem {
    QString name;
    qint64 size = 0;
    QDateTime modified; // invalid when unknown
    QDateTime created;
    QDateTime added;
    bool directory = false;
    bool package = false;
    bool hidden = false;
    bool symlink = false;
};

// The seam for what differs between Linux and macOS. Everything above it is portable.
class Platform {
public:
    virtual ~Platform() = default;
    static const Platform& instance();

    using ItemSink = std::function<void(RawItem&& item)>;
    // Hands over one level of a folder with the attributes of each item, in directory order, one
    // item at a time so a large folder never exists twice in memory.
    // Returns false and fills `error` with the system's text when the folder cannot be read.
    virtual bool listFolder(const QString& path, bool includeHidden, const ItemSink& sink,
                            QString& error) const = 0;
    // Attributes of one item; false when it cannot be read.
    virtual bool readItem(const QString& path, RawItem& out) const = 0;

    using FolderSink = std::function<void(QString&& name, bool hidden)>;
    // The folders a tree may open in place, one level down, in directory order: real directories,
    // never links or packages, so a walk keeps the path it took and cannot run in circles.
    virtual bool listSubfolders(const QString& path, const FolderSink& sink, QString& error) const = 0;
    // Whether `path` itself is such a folder; a link to one is not.
    virtual bool isPlainFolder(const QString& path) const = 0;
    virtual QString word(PlatformWord word) const = 0;

    // The display type of a file: "File folder" for a plain directory, else the type database's text.
    static QString typeDescription(const QString& fileName, bool directory, bool package);
};

} // namespace orvane
