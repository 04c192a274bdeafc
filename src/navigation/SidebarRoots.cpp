#include "navigation/SidebarRoots.h"

#include "core/Entry.h"

#include <QDir>
#include <QHash>
#include <QStandardPaths>

namespace orvane {

namespace {

struct Standard {
    QStandardPaths::StandardLocation location;
    const char* name;
    const char* title;
    const char* symbol;
};

const Standard standards[] = {
    {QStandardPaths::DesktopLocation, "Desktop", "Desktop", "desktopcomputer"},
    {QStandardPaths::DownloadLocation, "Downloads", "Downloads", "arrow.down.circle"},
    {QStandardPaths::DocumentsLocation, "Documents", "Documents", "doc.text"},
    {QStandardPaths::PicturesLocation, "Pictures", "Pictures", "photo"},
    {QStandardPaths::MoviesLocation, "Movies", "Videos", "film"},
    {QStandardPaths::MusicLocation, "Music", "Music", "music.note"},
};

// The folder's own name as the user sees it, and its parent's; a phone folder's come from its path.
QString lastComponent(const QString& path) {
    return path.section(u'/', -1, -1, QString::SectionSkipEmpty);
}

QString parentPath(const QString& path) {
    const QString clean = QDir::cleanPath(path);
    return clean.left(qMax<qsizetype>(clean.lastIndexOf(u'/'), 1));
}

// The desktop's own name for the folder counts as well as the usual one, so ~/Videos is "Videos".
const Standard* standardFolder(const QUrl& pin, const QString& home) {
    if (!pin.isLocalFile()) return nullptr;
    const QString path = QDir::cleanPath(pin.toLocalFile());
    if (parentPath(path) != QDir::cleanPath(home)) return nullptr;
    for (const Standard& s : standards) {
        if (lastComponent(path) == QLatin1String(s.name) ||
            path == QDir::cleanPath(QStandardPaths::writableLocation(s.location)))
            return &s;
    }
    return nullptr;
}

QString pinLocation(const QUrl& pin) {
    return pin.isLocalFile() ? QDir::cleanPath(pin.toLocalFile()) : pin.toString(QUrl::FullyEncoded);
}

} // namespace

QList<SidebarPlace> SidebarRoots::pinPlaces(const QList<QUrl>& pins, const QString& home) {
    QHash<QString, int> namesakes;
    for (const QUrl& pin : pins)
        ++namesakes[lastComponent(pin.path())];
    QList<SidebarPlace> places;
    for (const QUrl& pin : pins) {
        if (const Standard* s = standardFolder(pin, home)) {
            places.append({QLatin1String(s->title), pinLocation(pin), QLatin1String(s->symbol)});
            continue;
        }
        const QString name = lastComponent(pin.path());
        QString title = name.isEmpty() ? folderName(pin) : name;
        if (namesakes.value(name) > 1 && !name.isEmpty())
            title += QStringLiteral(" — ") + lastComponent(parentPath(pin.path()));
        places.append({title, pinLocation(pin), QStringLiteral("folder")});
    }
    return places;
}

QList<SidebarPlace> SidebarRoots::roots(const QString& home, const QList<QUrl>& pins,
                                        const QList<SidebarPlace>& locations) {
    QList<SidebarPlace> roots;
    roots.append({QStringLiteral("Home"), QDir::cleanPath(home), QStringLiteral("house")});
    roots.append(SidebarPlace::section(QStringLiteral("Quick access")));
    roots.append(pinPlaces(pins, home));
    roots.append(SidebarPlace::section(QStringLiteral("Locations")));
    roots.append(locations);
    return roots;
}

} // namespace orvane
