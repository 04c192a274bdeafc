#include "media/VideoPreview.h"
#include "media/AudioPreview.h"
#include "media/InlineVideoSurface.h"
#include "support/MediaSamples.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWidget>
#include <memory>

using namespace orvane;
using namespace orvane::test;

// Real videos made by ffmpeg. A Flash stream under a video name is what GStreamer cannot read and
// ffmpeg can, so it takes the conversion road.
class VideoPreviewTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir;
    QString folder;
    std::unique_ptr<AudioPreview> audio;
    std::unique_ptr<VideoPreview> video;
    std::unique_ptr<QWidget> view;
    const QRect spot{10, 10, 96, 72};

    QString temp() const { return folder + QStringLiteral("/tmp"); }
    QString clip(const QString& name, double seconds = 3, bool sound = true, const char* format = nullptr) {
        const QString path = folder + u'/' + name;
        if (NativePath::exists(path)) return path;
        QStringList extra{QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")};
        if (format) extra << QStringLiteral("-f") << QLatin1String(format);
        QString source = QStringLiteral("testsrc=size=160x120:rate=25");
        if (!sound) return makeMedia(folder, name, source, seconds, extra);
        // A second input for the sound: lavfi graphs with two outputs.
        source = QStringLiteral("testsrc=size=160x120:rate=25[out0];sine=frequency=440[out1]");
        return makeMedia(folder, name, source, seconds, extra);
    }

private slots:
    void initTestCase() {
        folder = dir.path();
        QDir().mkpath(temp());
    }
    void init() {
        audio = std::make_unique<AudioPreview>();
        video = std::make_unique<VideoPreview>(*audio);
        video->temporaryFolder = temp();
        view = std::make_unique<QWidget>();
        view->resize(300, 200);
    }
    void cleanup() {
        video->stop();
        QVERIFY(video->current().isEmpty());
        QVERIFY(!view->findChild<InlineVideoSurface*>());
        video.reset();
        audio.reset();
        QTRY_COMPARE(leftovers(temp(), QStringLiteral("PaneVideo-")), QStringList());
    }

    void supports_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isVideo");
        for (const char* e : {"mp4", "MOV", "m4v", "Mkv", "avi", "webm", "mpg", "mpeg", "m2v", "mts", "m2ts",
                              "ts", "wmv", "flv", "3gp", "3g2", "vob", "ogv"})
            QTest::newRow(e) << QStringLiteral("clip.") + QLatin1String(e) << true;
        QTest::newRow("text") << "notes.txt" << false;
        QTest::newRow("audio") << "song.mp3" << false;
        QTest::newRow("no extension") << "movie" << false;
    }
    void supports() {
        QFETCH(QString, name);
        QFETCH(bool, isVideo);
        QCOMPARE(VideoPreview::supports(folder + u'/' + name), isVideo);
    }

    // Over its icon, with real frames; paused, a seek still moves it; the button's click resumes.
    void playsOverItsIcon_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("converted");
        QTest::newRow("mp4") << "a.mp4" << false;
        QTest::newRow("byte 0xFF") << QStringLiteral("odd") + NativePath::decode("\xff") +
                                          QStringLiteral(".mp4")
                                   << false;
        QTest::newRow("refused by the player") << "flash.mkv" << true;
        QTest::newRow("refused, no sound track") << "silent.mkv" << true;
    }
    void playsOverItsIcon() {
        QFETCH(QString, name);
        QFETCH(bool, converted);
        const QString file = clip(name, 3, name != QLatin1String("silent.mkv"), converted ? "swf" : nullptr);
        QVERIFY(!file.isEmpty());
        video->toggle(file, view.get(), spot);
        auto* surface = view->findChild<InlineVideoSurface*>();
        QVERIFY(surface);
        QCOMPARE(surface->geometry(), spot);
        QVERIFY(surface->testAttribute(Qt::WA_TransparentForMouseEvents));
        if (converted) QTRY_VERIFY_WITH_TIMEOUT(video->converting(), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(video->duration() > 2 && !surface->frame().isNull(), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(video->elapsed() > 0.2, 10000);
        QCOMPARE(leftovers(temp(), QStringLiteral("PaneVideo-")).size(), converted ? 1 : 0);
        video->toggle(file, view.get(), spot);
        QTRY_VERIFY(!video->playing());
        video->seek(2.0);
        QTRY_VERIFY(qAbs(video->elapsed() - 2.0) < 0.3);
        QVERIFY(!video->playing());
        video->toggle(file, view.get(), spot);
        QTRY_VERIFY(video->playing());
    }

    void audioAndVideoExcludeEachOther() {
        const QString sound = makeSine(folder, QStringLiteral("s.mp3"), 3);
        audio->toggle(sound);
        video->toggle(clip(QStringLiteral("a.mp4")), view.get(), spot);
        QVERIFY(audio->current().isEmpty());
        audio->toggle(sound);
        QVERIFY(video->current().isEmpty());
        QVERIFY(!view->findChild<InlineVideoSurface*>());
        audio->stop();
    }

    void newerVideoRemovesTheConversion() {
        const QString slow = clip(QStringLiteral("long.mkv"), 600, true, "swf");
        video->toggle(slow, view.get(), spot);
        QTRY_VERIFY_WITH_TIMEOUT(video->converting(), 10000);
        QTRY_COMPARE(leftovers(temp(), QStringLiteral("PaneVideo-")).size(), 1);
        const QString other = clip(QStringLiteral("a.mp4"));
        video->toggle(other, view.get(), spot);
        QTRY_COMPARE(leftovers(temp(), QStringLiteral("PaneVideo-")), QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(video->elapsed() > 0.2, 10000);
        QCOMPARE(video->current(), other);
    }

    void goneViewEndsTheVideo() {
        video->toggle(clip(QStringLiteral("a.mp4")), view.get(), spot);
        view.reset(new QWidget);
        QTRY_VERIFY(video->current().isEmpty());
        QVERIFY(!video->playing());
    }

    void failures_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("withDecoder");
        QTest::addColumn<QString>("text");
        QTest::newRow("not a video") << "fake.mp4" << true
                                     << "This video is damaged, protected, or uses an unsupported codec.";
        QTest::newRow("no decoder") << "flash.mkv" << false << "Additional video decoder unavailable.";
    }
    void failures() {
        QFETCH(QString, name);
        QFETCH(bool, withDecoder);
        QFETCH(QString, text);
        QFile fake(folder + QStringLiteral("/fake.mp4"));
        QVERIFY(fake.open(QIODevice::WriteOnly));
        fake.write(QByteArray(5000, 'x'));
        fake.close();
        clip(QStringLiteral("flash.mkv"), 3, true, "swf");
        if (!withDecoder) video->decoderPath.reset();
        QSignalSpy failed(video.get(), &VideoPreview::failed);
        video->toggle(folder + u'/' + name, view.get(), spot);
        QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, 10000);
        QCOMPARE(failed.at(0).at(0).toString(), text);
        QVERIFY(video->current().isEmpty());
        QVERIFY(!view->findChild<InlineVideoSurface*>());
    }
};

ORVANE_TEST_MAIN(VideoPreviewTest)
#include "VideoPreviewTest.moc"
