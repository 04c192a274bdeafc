#include "platform/MacPlatform.h"

#import <Foundation/Foundation.h>

namespace orvane {

const Platform& Platform::instance() {
    static const MacPlatform platform;
    return platform;
}

namespace {

NSArray<NSURLResourceKey>* keys() {
    return @[
        NSURLIsDirectoryKey, NSURLIsPackageKey, NSURLFileSizeKey, NSURLContentModificationDateKey,
        NSURLCreationDateKey, NSURLAddedToDirectoryDateKey, NSURLIsHiddenKey, NSURLIsSymbolicLinkKey
    ];
}

QDateTime toDate(id value) {
    if (![value isKindOfClass:[NSDate class]]) return {};
    return QDateTime::fromMSecsSinceEpoch(qint64([(NSDate*)value timeIntervalSince1970] * 1000), Qt::UTC);
}

void fill(NSURL* url, RawItem& out) {
    NSDictionary* v = [url resourceValuesForKeys:keys() error:nil];
    out.name = QString::fromNSString(url.lastPathComponent);
    out.directory = [v[NSURLIsDirectoryKey] boolValue];
    out.package = [v[NSURLIsPackageKey] boolValue];
    out.size = [v[NSURLFileSizeKey] longLongValue];
    out.modified = toDate(v[NSURLContentModificationDateKey]);
    out.created = toDate(v[NSURLCreationDateKey]);
    out.added = toDate(v[NSURLAddedToDirectoryDateKey]);
    out.hidden = [v[NSURLIsHiddenKey] boolValue];
    out.symlink = [v[NSURLIsSymbolicLinkKey] boolValue];
}

} // namespace

bool MacPlatform::listFolder(const QString& path, bool includeHidden, const ItemSink& sink,
                             QString& error) const {
    @autoreleasepool {
        NSError* failure = nil;
        NSDirectoryEnumerationOptions options = includeHidden ? 0 : NSDirectoryEnumerationSkipsHiddenFiles;
        NSArray<NSURL*>* urls =
            [NSFileManager.defaultManager contentsOfDirectoryAtURL:[NSURL fileURLWithPath:path.toNSString()]
                                        includingPropertiesForKeys:keys()
                                                           options:options
                                                             error:&failure];
        if (!urls) {
            error = QString::fromNSString(failure.localizedDescription);
            return false;
        }
        for (NSURL* url in urls) {
            RawItem item;
            fill(url, item);
            sink(std::move(item));
        }
        return true;
    }
}

bool MacPlatform::readItem(const QString& path, RawItem& out) const {
    @autoreleasepool {
        NSURL* url = [NSURL fileURLWithPath:path.toNSString()];
        if (![url checkResourceIsReachableAndReturnError:nil]) return false;
        fill(url, out);
        return true;
    }
}

bool MacPlatform::listSubfolders(const QString& path, const FolderSink& sink, QString& error) const {
    @autoreleasepool {
        NSError* failure = nil;
        NSArray<NSURLResourceKey>* folderKeys =
            @[ NSURLIsDirectoryKey, NSURLIsPackageKey, NSURLIsSymbolicLinkKey, NSURLIsHiddenKey ];
        NSArray<NSURL*>* urls =
            [NSFileManager.defaultManager contentsOfDirectoryAtURL:[NSURL fileURLWithPath:path.toNSString()]
                                        includingPropertiesForKeys:folderKeys
                                                           options:0
                                                             error:&failure];
        if (!urls) {
            error = QString::fromNSString(failure.localizedDescription);
            return false;
        }
        for (NSURL* url in urls) {
            NSDictionary* v = [url resourceValuesForKeys:folderKeys error:nil];
            if (![v[NSURLIsDirectoryKey] boolValue] || [v[NSURLIsPackageKey] boolValue] ||
                [v[NSURLIsSymbolicLinkKey] boolValue])
                continue;
            QString name = QString::fromNSString(url.lastPathComponent);
            const bool hidden = [v[NSURLIsHiddenKey] boolValue] || name.startsWith(u'.');
            sink(std::move(name), hidden);
        }
        return true;
    }
}

bool MacPlatform::isPlainFolder(const QString& path) const {
    @autoreleasepool {
        NSURL* url = [NSURL fileURLWithPath:path.toNSString()];
        NSDictionary* v =
            [url resourceValuesForKeys:@[ NSURLIsDirectoryKey, NSURLIsPackageKey, NSURLIsSymbolicLinkKey ]
                                 error:nil];
        return v && [v[NSURLIsDirectoryKey] boolValue] && ![v[NSURLIsPackageKey] boolValue] &&
               ![v[NSURLIsSymbolicLinkKey] boolValue];
    }
}

QString MacPlatform::word(PlatformWord word) const {
    switch (word) {
    case PlatformWord::RootVolume:
        return QStringLiteral("Macintosh HD");
    case PlatformWord::ShowInFileManager:
        return QStringLiteral("Show in Finder");
    case PlatformWord::CopyToComputer:
        return QStringLiteral("Copy to Mac");
    case PlatformWord::FileManager:
        return QStringLiteral("Finder");
    case PlatformWord::PropertiesNote:
        return QStringLiteral("Values are read from macOS. Folder sizes include hidden files and package "
                              "contents; symbolic links are counted without following their targets. Shared APFS "
                              "blocks may be counted more than once in Size on disk.");
    case PlatformWord::ThisComputer:
        return QStringLiteral("This Mac");
    case PlatformWord::ThisComputerInText:
        return QStringLiteral("this Mac");
    case PlatformWord::FilesCopiedToComputer:
        return QStringLiteral("Files copied to Mac");
    case PlatformWord::FullDiskAccess:
        return QStringLiteral("Full Disk Access…");
    case PlatformWord::ModifierNote:
        return QStringLiteral("On Mac: Alt = Option (⌥). Command also works for Ctrl.");
    case PlatformWord::MakeAlias:
        return QStringLiteral("Create a macOS alias shortcut");
    case PlatformWord::QuickLook:
        return QStringLiteral("Quick Look");
    }
    return {};
}

} // namespace orvane
