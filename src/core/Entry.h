#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

namespace orvane {

struct RawItem;

// One listed item, local or on a phone. Kept small: a listing may hold 100,000 of them.
struct Entry {
    // Absolute local path holding the exact bytes the directory gave (see NativePath), or the full
    // android:// address of a phone item.
    QString location;
    QString kind;    // display type; shared text, so equal kinds cost one string
    qint64 size = 0; // bytes, 0 when unknown
    QDateTime modified;
    QDateTime created;
    QDateTime added;        // for an item in the Trash, when it was deleted
    QString origin;         // for an item in the Trash, the path it was deleted from
    bool directory = false; // packages count as directories
    bool package = false;

    // Never fails: an unreadable item still becomes an entry with plain defaults.
    static Entry fromUrl(const QUrl& url);
    static Entry fromPath(const QString& path);
    static Entry fromRaw(const QString& folder, RawItem&& raw);

    QUrl url() const;
    // The last component as a person reads it: a byte that is not UTF-8 shows as U+FFFD.
    QString name() const;
    bool isPhone() const { return location.startsWith(QLatin1String("android:")); }
    bool isPlainFolder() const { return directory && !package; }
};

// Display name of a folder: the last path component, the root volume's name, or the phone's.
QString folderName(const QUrl& url);
// Whether two entries show the same; rows that differ are repainted.
bool sameShown(const Entry& a, const Entry& b);

// A place other than the local disk names its items and folders itself; the phone sets these.
struct ForeignNames {
    QString (*item)(const QString& location) = nullptr;
    QString (*folder)(const QUrl& url) = nullptr;
};
void setForeignNames(ForeignNames names);

} // namespace orvane
