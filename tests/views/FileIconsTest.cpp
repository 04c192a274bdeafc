#include "views/FileIcons.h"

#include "platform/Platform.h"
#include "support/TestEnvironment.h"

#include <QImage>

using namespace orvane;

namespace {

Entry file(const QString& name) {
    Entry e;
    e.location = QStringLiteral("/f/") + name;
    e.kind = Platform::typeDescription(name, false, false);
    return e;
}

QImage picture(const QIcon& icon) {
    return icon.pixmap(QSize(18, 18), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class FileIconsTest : public QObject {
    Q_OBJECT

private slots:
    // Files of different families look different from each other and from the plain page of a
    // file of no known type.
    void familiesLookDifferent() {
        const struct {
            const char* name;
            const char* family;
        } files[] = {{"notes.txt", "text-x-generic"},
                     {"photo.png", "image-x-generic"},
                     {"song.mp3", "audio-x-generic"},
                     {"clip.mp4", "video-x-generic"},
                     {"backup.zip", "package-x-generic"}};
        FileIcons& icons = FileIcons::shared();
        QList<QImage> seen = {picture(icons.document())};
        QList<QImage> own = seen;
        for (const auto& f : files) {
            const QIcon icon = icons.icon(file(QLatin1String(f.name)));
            const QImage image = picture(icon);
            QVERIFY2(!seen.contains(image), f.name);
            seen << image;
            // With a freedesktop theme installed, the theme's icon for the family is the one shown;
            // without one, the program's own stands in.
            if (QIcon::hasThemeIcon(QLatin1String(f.family))) QCOMPARE(icon.name(), QLatin1String(f.family));
            const QImage bundled = picture(FileIcons::bundled(QLatin1String(f.family)));
            QVERIFY2(!own.contains(bundled), f.family);
            own << bundled;
        }
    }

    // One icon per type, however many files: the table paints its pixmaps from a cache keyed by it.
    void oneIconPerType() {
        FileIcons& icons = FileIcons::shared();
        const qint64 first = icons.icon(file(QStringLiteral("a.png"))).cacheKey();
        QCOMPARE(icons.icon(file(QStringLiteral("b.png"))).cacheKey(), first);
        QVERIFY(icons.icon(file(QStringLiteral("c.mp3"))).cacheKey() != first);
        QCOMPARE(icons.forType(QString()).cacheKey(), icons.forType(QString()).cacheKey());
    }
};

ORVANE_TEST_MAIN(FileIconsTest)
#include "FileIconsTest.moc"
