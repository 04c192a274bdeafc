#include "core/Entry.h"

#include "platform/NativePath.h"
#include "platform/Platform.h"

namespace orvane {

Entry Entry::fromUrl(const QUrl& url) {
    if (url.isLocalFile()) return fromPath(url.toLocalFile());
    Entry entry;
    entry.location = url.toString();
    entry.kind = QStringLiteral("File");
    return entry;
}

Entry Entry::fromPath(const QString& path) {
    RawItem raw;
    Entry entry;
    entry.location = path;
    if (!Platform::instance().readItem(path, raw)) {
        entry.kind = QStringLiteral("File");
        return entry;
    }
    entry.directory = raw.directory;
    entry.package = raw.package;
    entry.size = raw.size;
    entry.modified = raw.modified;
    entry.created = raw.created;
    entry.added = raw.added;
    entry.kind = Platform::typeDescription(raw.name, raw.directory, raw.package);
    return entry;
}

Entry Entry::fromRaw(const QString& folder, RawItem&& raw) {
    Entry entry;
    entry.location = folder.endsWith(u'/') ? folder + raw.name : folder + u'/' + raw.name;
    entry.kind = Platform::typeDescription(raw.name, raw.directory, raw.package);
    entry.directory = raw.directory;
    entry.package = raw.package;
    entry.size = raw.size;
    entry.modified = std::move(raw.modified);
    entry.created = std::move(raw.created);
    entry.added = std::move(raw.added);
    return entry;
}

namespace {
ForeignNames foreign;
} // namespace

bool sameShown(const Entry& a, const Entry& b) {
    return a.size == b.size && a.modified == b.modified && a.created == b.created && a.kind == b.kind &&
           a.directory == b.directory && a.package == b.package && a.added == b.added && a.origin == b.origin;
}

void setForeignNames(ForeignNames names) {
    foreign = names;
}

QUrl Entry::url() const {
    return isPhone() ? QUrl(location) : QUrl::fromLocalFile(location);
}

QString Entry::name() const {
    if (isPhone()) return foreign.item ? foreign.item(location) : location;
    return NativePath::display(location.mid(location.lastIndexOf(u'/') + 1));
}

QString folderName(const QUrl& url) {
    if (url.scheme() == QLatin1String("android"))
        return foreign.folder ? foreign.folder(url) : url.toString();
    if (url.scheme() == QLatin1String("trash")) return QStringLiteral("Trash");
    const QString path = url.toLocalFile();
    const QString last = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    if (path == QLatin1String("/") || last.isEmpty())
        return Platform::instance().word(PlatformWord::RootVolume);
    return NativePath::display(last);
}

} // namespace orvane
