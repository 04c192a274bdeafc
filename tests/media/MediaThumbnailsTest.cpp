#include "media/MediaThumbnails.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QImage>

using namespace orvane;
using orvane::test::TempTree;

namespace {

QByteArray encoded(QColor color, QSize size, const char* format) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

quint32 crc32(const QByteArray& bytes) {
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
    }
    return ~crc;
}

// A PNG whose header claims 30,000 × 30,000 pixels.
QByteArray hugePng() {
    QByteArray bytes = encoded(Qt::red, QSize(1, 1), "png");
    for (int at : {16, 20}) {
        const quint32 side = 30000;
        for (int i = 0; i < 4; ++i)
            bytes[at + i] = char(side >> (24 - 8 * i));
    }
    const quint32 crc = crc32(bytes.mid(12, 17));
    for (int i = 0; i < 4; ++i)
        bytes[29 + i] = char(crc >> (24 - 8 * i));
    return bytes;
}

struct Service {
    TempTree& tree;
    MediaThumbnails media{ThumbnailMaker(ThumbnailCache(tree.path(QStringLiteral("thumbnails"))),
                                         DesktopThumbnailers({tree.path(QStringLiteral("none"))}))};

    QImage wait(const Entry& entry) {
        QImage result;
        bool done = false;
        media.request(entry, [&](const QImage& image) {
            result = image;
            done = true;
        });
        return QTest::qWaitFor([&done] { return done; }, 20000) ? result : QImage();
    }
};

} // namespace

class MediaThumbnailsTest : public QObject {
    Q_OBJECT
private slots:
    void tenCallersOneGeneration();
    void validPictureOfAnotherProgramIsUsed();
    void changedFileGetsANewPicture();
    void noPicture_data();
    void noPicture();
    void askedAgainMovesToTheFront();
    void exactBytesNameReadsThatFile();
};

void MediaThumbnailsTest::tenCallersOneGeneration() {
    TempTree tree;
    Service service{tree};
    const Entry photo =
        Entry::fromPath(tree.file(QStringLiteral("big.jpg"), encoded(Qt::red, {1600, 1200}, "jpg")));
    QVERIFY(service.media.supports(photo));
    QVERIFY(!service.media.supports(Entry::fromPath(tree.folder(QStringLiteral("folder.jpg")))));
    QVERIFY(!service.media.cached(photo));
    int calls = 0;
    for (int i = 0; i < 10; ++i)
        service.media.request(photo, [&](const QImage& image) { calls += image.size() == QSize(256, 192); });
    QTRY_COMPARE(calls, 10);
    QCOMPARE(service.media.generations(), 1);
    QVERIFY(service.media.cached(photo));
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    QCOMPARE(cache.read(photo.location, photo.modified.toSecsSinceEpoch()).size(), QSize(256, 192));
}

void MediaThumbnailsTest::validPictureOfAnotherProgramIsUsed() {
    TempTree tree;
    const Entry photo =
        Entry::fromPath(tree.file(QStringLiteral("a.jpg"), encoded(Qt::red, {800, 600}, "jpg")));
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    QVERIFY(cache.write(photo.location, photo.modified.toSecsSinceEpoch(), photo.size, {},
                        QImage::fromData(encoded(Qt::blue, {64, 48}, "png"))));
    Service service{tree};
    const QImage shown = service.wait(photo);
    QCOMPARE(shown.size(), QSize(64, 48));
    QCOMPARE(shown.pixelColor(5, 5), QColor(Qt::blue));
}

void MediaThumbnailsTest::changedFileGetsANewPicture() {
    TempTree tree;
    Service service{tree};
    const QString path = tree.file(QStringLiteral("c.png"), encoded(Qt::red, {300, 300}, "png"));
    QCOMPARE(service.wait(Entry::fromPath(path)).pixelColor(1, 1), QColor(Qt::red));
    tree.file(QStringLiteral("c.png"), encoded(Qt::green, {300, 300}, "png"));
    tree.setModified(QStringLiteral("c.png"), QDateTime::currentDateTime().addSecs(60));
    const Entry changed = Entry::fromPath(path);
    QCOMPARE(service.wait(changed).pixelColor(1, 1), QColor(Qt::green));
    QCOMPARE(service.media.generations(), 2);
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    QCOMPARE(cache.read(path, changed.modified.toSecsSinceEpoch()).pixelColor(1, 1), QColor(Qt::green));
}

void MediaThumbnailsTest::noPicture_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("not a picture") << QStringLiteral("fake.jpg") << QByteArray("plain text, not a JPEG");
    QTest::newRow("zero-byte video") << QStringLiteral("empty.mp4") << QByteArray();
    QTest::newRow("30000 x 30000") << QStringLiteral("huge.png") << hugePng();
}

void MediaThumbnailsTest::noPicture() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    TempTree tree;
    Service service{tree};
    const Entry entry = Entry::fromPath(tree.file(name, content));
    QVERIFY(service.wait(entry).isNull());
    // Neither this service nor, through the fail folder, the next one tries again.
    QVERIFY(service.wait(entry).isNull());
    QCOMPARE(service.media.generations(), 1);
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    QVERIFY(cache.failed(entry.location, entry.modified.toSecsSinceEpoch()));
}

void MediaThumbnailsTest::askedAgainMovesToTheFront() {
    TempTree tree;
    Service service{tree};
    std::vector<Entry> photos;
    for (int i = 0; i < MediaThumbnails::maxActive + 2; ++i)
        photos.push_back(Entry::fromPath(
            tree.file(QStringLiteral("p%1.jpg").arg(i), encoded(Qt::red, {400, 300}, "jpg"))));
    int calls = 0;
    for (const Entry& photo : photos)
        service.media.request(photo, [&calls](const QImage&) { ++calls; });
    QCOMPARE(service.media.generations(), MediaThumbnails::maxActive);
    const Entry& last = photos.back();
    const Entry& before = photos[photos.size() - 2];
    QCOMPARE(service.media.queue(), QStringList({before.location, last.location}));
    service.media.request(last, [&calls](const QImage&) { ++calls; });
    QCOMPARE(service.media.queue(), QStringList({last.location, before.location}));
    QTRY_COMPARE(calls, int(photos.size()) + 1);
    QVERIFY(service.media.idle());
    QCOMPARE(service.media.generations(), int(photos.size()));
}

void MediaThumbnailsTest::exactBytesNameReadsThatFile() {
    TempTree tree;
    Service service{tree};
    const QString raw = tree.rawFile("photo\xff.png", encoded(Qt::green, {500, 500}, "png"));
    tree.file(NativePath::display(raw).section(u'/', -1), encoded(Qt::red, {500, 500}, "png"));
    QCOMPARE(service.wait(Entry::fromPath(raw)).pixelColor(5, 5), QColor(Qt::green));
}

ORVANE_TEST_MAIN(MediaThumbnailsTest)
#include "MediaThumbnailsTest.moc"
