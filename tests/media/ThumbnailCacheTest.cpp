#include "media/ThumbnailCache.h"
#include "media/DesktopThumbnailers.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QImageReader>
#include <sys/stat.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

QImage picture(QColor color, QSize size = QSize(40, 30)) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QByteArray png(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

int mode(const QString& path) {
    struct stat st;
    return stat(NativePath::encode(path).constData(), &st) == 0 ? int(st.st_mode & 0777) : -1;
}

} // namespace

class ThumbnailCacheTest : public QObject {
    Q_OBJECT
private slots:
    void uriIsTheExactBytes_data();
    void uriIsTheExactBytes();
    void writtenPicturesReadBackByTheRules();
    void anotherProgramsPicture_data();
    void anotherProgramsPicture();
    void failuresAreRecordedPerVersion();
    void nothingWrittenForTheCacheItselfOrWhenUnwritable();
    void thumbnailerArgumentsKeepBytes();
    void thumbnailerRunsAsAChild();
    void hungThumbnailerIsKilled();
};

void ThumbnailCacheTest::uriIsTheExactBytes_data() {
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("uri");
    QTest::newRow("plain") << QByteArray("/home/a/b.jpg") << QByteArray("file:///home/a/b.jpg");
    QTest::newRow("blank") << QByteArray("/a b.jpg") << QByteArray("file:///a%20b.jpg");
    QTest::newRow("reserved") << QByteArray("/#;?%[].png") << QByteArray("file:///%23%3B%3F%25%5B%5D.png");
    QTest::newRow("kept marks") << QByteArray("/a+b=c@d~!$&'(),*:.png")
                                << QByteArray("file:///a+b=c@d~!$&'(),*:.png");
    QTest::newRow("utf-8") << QByteArray("/\xc3\xa9.png") << QByteArray("file:///%C3%A9.png");
    QTest::newRow("not utf-8") << QByteArray("/\xff.png") << QByteArray("file:///%FF.png");
}

void ThumbnailCacheTest::uriIsTheExactBytes() {
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, uri);
    QCOMPARE(ThumbnailCache::uri(NativePath::decode(path)), uri);
}

void ThumbnailCacheTest::writtenPicturesReadBackByTheRules() {
    TempTree tree;
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    const QString file = tree.rawFile("photo\xff.jpg", "x");
    QVERIFY(cache.write(file, 1000, 1, QStringLiteral("image/jpeg"), picture(Qt::red)));
    const QString written =
        cache.folder() + QLatin1String("/large/") + ThumbnailCache::fileName(ThumbnailCache::uri(file));
    QCOMPARE(mode(written), 0600);
    QCOMPARE(mode(cache.folder() + QLatin1String("/large")), 0700);
    // As any other program reads it: the keys of the standard in the PNG itself.
    const QImage raw(written);
    QCOMPARE(raw.text(QStringLiteral("Thumb::URI")).toLatin1(), ThumbnailCache::uri(file));
    QCOMPARE(raw.text(QStringLiteral("Thumb::MTime")), QStringLiteral("1000"));
    QCOMPARE(raw.text(QStringLiteral("Thumb::Mime")), QStringLiteral("image/jpeg"));
    QCOMPARE(cache.read(file, 1000).pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(cache.read(file, 1001).isNull());
    // The lookalike name shown for the same file is another file with no picture.
    QVERIFY(cache.read(NativePath::display(file), 1000).isNull());
}

void ThumbnailCacheTest::anotherProgramsPicture_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<qint64>("stamp");
    QTest::addColumn<bool>("used");
    QTest::newRow("normal, current") << QStringLiteral("normal") << qint64(77) << true;
    QTest::newRow("x-large, current") << QStringLiteral("x-large") << qint64(77) << true;
    QTest::newRow("an older version") << QStringLiteral("large") << qint64(76) << false;
}

void ThumbnailCacheTest::anotherProgramsPicture() {
    QFETCH(QString, folder);
    QFETCH(qint64, stamp);
    QFETCH(bool, used);
    TempTree tree;
    const QString file = tree.file(QStringLiteral("a.png"), "x");
    QImage made = picture(Qt::blue, QSize(128, 96));
    made.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(ThumbnailCache::uri(file)));
    made.setText(QStringLiteral("Thumb::MTime"), QString::number(stamp));
    tree.file(QStringLiteral("thumbnails/") + folder + u'/' +
                  ThumbnailCache::fileName(ThumbnailCache::uri(file)),
              png(made));
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    QCOMPARE(cache.read(file, 77).isNull(), !used);
    if (used) QCOMPARE(cache.read(file, 77).size(), QSize(128, 96));
}

void ThumbnailCacheTest::failuresAreRecordedPerVersion() {
    TempTree tree;
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    const QString file = tree.file(QStringLiteral("broken.jpg"), "not a picture");
    QVERIFY(!cache.failed(file, 5));
    QVERIFY(cache.recordFailure(file, 5));
    QVERIFY(cache.failed(file, 5));
    QVERIFY(!cache.failed(file, 6));
    QVERIFY(cache.failFolder().startsWith(cache.folder() + QLatin1String("/fail/orvane-")));
    QVERIFY(cache.read(file, 5).isNull());
}

void ThumbnailCacheTest::nothingWrittenForTheCacheItselfOrWhenUnwritable() {
    TempTree tree;
    const ThumbnailCache cache(tree.path(QStringLiteral("thumbnails")));
    const QString inside = tree.file(QStringLiteral("thumbnails/large/x.png"), png(picture(Qt::red)));
    QVERIFY(!cache.write(inside, 1, 1, {}, picture(Qt::red)));
    QVERIFY(!cache.recordFailure(inside, 1));
    // A cache folder that cannot be made, even by root: a file stands where its parent would be.
    tree.file(QStringLiteral("blocked"), "x");
    const ThumbnailCache locked(tree.path(QStringLiteral("blocked/thumbnails")));
    const QString file = tree.file(QStringLiteral("b.png"), "x");
    QVERIFY(!locked.write(file, 1, 1, {}, picture(Qt::red)));
    QVERIFY(!locked.recordFailure(file, 1));
    QVERIFY(locked.read(file, 1).isNull());
}

void ThumbnailCacheTest::thumbnailerArgumentsKeepBytes() {
    const QString path = NativePath::decode(QByteArray("/v/clip \xff.mp4"));
    const auto argv = DesktopThumbnailers::arguments(
        QStringLiteral("ffmpegthumbnailer -s %s -i %i -o %o -c png \"%u\" 100%%"), path, "/tmp/out.png", 256);
    const std::vector<QByteArray> expected = {
        "ffmpegthumbnailer",        "-s",  "256", "-i", "/v/clip \xff.mp4", "-o", "/tmp/out.png", "-c", "png",
        "file:///v/clip%20%FF.mp4", "100%"};
    QCOMPARE(argv, expected);
}

void ThumbnailCacheTest::thumbnailerRunsAsAChild() {
    TempTree tree;
    tree.file(QStringLiteral("share/thumbnailers/copy.thumbnailer"),
              "[Thumbnailer Entry]\nTryExec=cp\nExec=cp %i %o\nMimeType=text/plain;\n");
    tree.file(QStringLiteral("share/thumbnailers/missing.thumbnailer"),
              "[Thumbnailer Entry]\nTryExec=no-such-program-here\nExec=no-such-program-here %i "
              "%o\nMimeType=video/mp4;\n");
    const DesktopThumbnailers thumbnailers({tree.path(QStringLiteral("share"))});
    QVERIFY(thumbnailers.handles(QStringLiteral("text/plain")));
    QVERIFY(!thumbnailers.handles(QStringLiteral("video/mp4")));
    // A picture under a name that is not UTF-8, beside a lookalike that holds another one.
    const QString file = tree.rawFile("notes\xff.txt", png(picture(Qt::green, QSize(600, 300))));
    tree.file(NativePath::display(file).section(u'/', -1), png(picture(Qt::red)));
    const QImage made = thumbnailers.make(file, QStringLiteral("text/plain"), 256);
    QCOMPARE(made.size(), QSize(256, 128));
    QCOMPARE(made.pixelColor(10, 10), QColor(Qt::green));
}

void ThumbnailCacheTest::hungThumbnailerIsKilled() {
    QVERIFY(!DesktopThumbnailers::run({"sh", "-c", "sleep 60 & sleep 60"}, 200));
    QVERIFY(!DesktopThumbnailers::run({"no-such-program-here"}, 200));
    QVERIFY(DesktopThumbnailers::run({"true"}, 5000));
}

ORVANE_TEST_MAIN(ThumbnailCacheTest)
#include "ThumbnailCacheTest.moc"
