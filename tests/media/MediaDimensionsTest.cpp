#include "media/MediaDimensions.h"
#include "media/ThumbnailMaker.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QBuffer>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <cmath>

using namespace orvane;
using orvane::test::TempTree;

namespace {

QByteArray encoded(QSize size, const char* format) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A JPEG whose EXIF says it is turned a quarter (orientation 6), as a phone writes a portrait photo.
QByteArray turnedJpeg(QSize stored) {
    QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08", 14);
    exif += QByteArray("\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 18);
    QByteArray segment("\xff\xe1");
    segment += char((exif.size() + 2) >> 8);
    segment += char((exif.size() + 2) & 0xff);
    QByteArray jpeg = encoded(stored, "jpg");
    return jpeg.insert(2, segment + exif);
}

// A short video made with ffmpeg, turned by `rotate` degrees (set when copying, where ffmpeg writes
// it into the display matrix); empty when ffmpeg is not there.
QString video(TempTree& tree, const QString& name, int rotate) {
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg.isEmpty()) return {};
    const QStringList quiet = {QStringLiteral("-nostdin"), QStringLiteral("-y"), QStringLiteral("-v"),
                               QStringLiteral("quiet")};
    const QString plain = tree.path(QStringLiteral("plain-") + name), path = tree.path(name);
    QProcess::execute(ffmpeg, QStringList(quiet)
                                  << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
                                  << QStringLiteral("color=s=320x180:d=0.2") << QStringLiteral("-c:v")
                                  << QStringLiteral("mpeg4") << plain);
    QProcess::execute(ffmpeg, QStringList(quiet)
                                  << QStringLiteral("-i") << plain << QStringLiteral("-c")
                                  << QStringLiteral("copy") << QStringLiteral("-metadata:s:v:0")
                                  << QStringLiteral("rotate=%1").arg(rotate) << path);
    return path;
}

} // namespace

class MediaDimensionsTest : public QObject {
    Q_OBJECT
private slots:
    void format_data();
    void format();
    void read_data();
    void read();
    void pictureIsDrawnUpright();
    void requestAnswersEveryCaller();
};

void MediaDimensionsTest::format_data() {
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QString>("text");
    QTest::newRow("landscape") << QSizeF(1920, 1080) << QStringLiteral("1920 × 1080");
    QTest::newRow("rounded, signs dropped") << QSizeF(-319.6, 180.4) << QStringLiteral("320 × 180");
    QTest::newRow("no width") << QSizeF(0, 1080) << QString();
    QTest::newRow("not finite") << QSizeF(qInf(), 10) << QString();
    QTest::newRow("not a number") << QSizeF(10, std::nan("")) << QString();
}

void MediaDimensionsTest::format() {
    QFETCH(QSizeF, size);
    QFETCH(QString, text);
    QCOMPARE(MediaDimensions::format(size).value_or(QString()), text);
}

void MediaDimensionsTest::read_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("rotate"); // a video made with ffmpeg when content is empty
    QTest::addColumn<QString>("text");
    QTest::newRow("png") << QStringLiteral("a.png") << encoded({320, 180}, "png") << 0
                         << QStringLiteral("320 × 180");
    QTest::newRow("jpeg turned by exif")
        << QStringLiteral("b.jpg") << turnedJpeg({320, 180}) << 0 << QStringLiteral("180 × 320");
    QTest::newRow("text") << QStringLiteral("c.txt") << QByteArray("hello") << 0 << QString();
    QTest::newRow("not a picture") << QStringLiteral("d.jpg") << QByteArray("hello") << 0 << QString();
    QTest::newRow("zero-byte video") << QStringLiteral("e.mp4") << QByteArray("") << -1 << QString();
    QTest::newRow("video") << QStringLiteral("f.mp4") << QByteArray() << 0 << QStringLiteral("320 × 180");
    QTest::newRow("video turned") << QStringLiteral("g.mp4") << QByteArray() << 90
                                  << QStringLiteral("180 × 320");
}

void MediaDimensionsTest::read() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(int, rotate);
    QFETCH(QString, text);
    TempTree tree;
    QString path = tree.file(name, content);
    if (content.isEmpty() && rotate >= 0 && (path = video(tree, name, rotate)).isEmpty())
        QSKIP("ffmpeg is not installed");
    QCOMPARE(MediaDimensions::read(path).value_or(QString()), text);
}

void MediaDimensionsTest::pictureIsDrawnUpright() {
    TempTree tree;
    const QImage turned =
        ThumbnailMaker::readImage(tree.file(QStringLiteral("t.jpg"), turnedJpeg({320, 180})), 256);
    QCOMPARE(turned.size(), QSize(144, 256));
    const QImage small =
        ThumbnailMaker::readImage(tree.file(QStringLiteral("s.png"), encoded({40, 30}, "png")), 256);
    QCOMPARE(small.size(), QSize(40, 30));
}

void MediaDimensionsTest::requestAnswersEveryCaller() {
    TempTree tree;
    MediaDimensions dimensions;
    QStringList answers;
    const auto collect = [&answers](const QString& text) { answers << text; };
    dimensions.request(Entry::fromPath(tree.folder(QStringLiteral("folder"))), collect);
    dimensions.request(Entry::fromPath(tree.file(QStringLiteral("notes.txt"), "x")), collect);
    QCOMPARE(answers, QStringList({QString(), QStringLiteral("—")}));
    const Entry photo = Entry::fromPath(tree.file(QStringLiteral("p.png"), encoded({64, 32}, "png")));
    for (int i = 0; i < 10; ++i)
        dimensions.request(photo, collect);
    QTRY_COMPARE(answers.size(), 12);
    QCOMPARE(answers.count(QStringLiteral("64 × 32")), 10);
    QCOMPARE(dimensions.cached(photo).value_or(QString()), QStringLiteral("64 × 32"));
}

ORVANE_TEST_MAIN(MediaDimensionsTest)
#include "MediaDimensionsTest.moc"
