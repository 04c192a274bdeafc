#include "media/MediaDecoder.h"
#include "support/TestEnvironment.h"

#include <QTemporaryDir>

using namespace orvane;

class MediaDecoderTest : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

    QString program(const QString& folder, bool runnable = true) {
        QDir().mkpath(dir.filePath(folder));
        QFile file(dir.filePath(folder + QStringLiteral("/ffmpeg")));
        if (!file.open(QIODevice::WriteOnly)) return {};
        file.write("#!/bin/sh\n");
        file.setPermissions(runnable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
        return file.fileName();
    }

private slots:
    // Beside the program first, then the PATH in its order; a file that cannot run is passed over.
    void lookup_data() {
        QTest::addColumn<QString>("beside");
        QTest::addColumn<QStringList>("path");
        QTest::addColumn<QString>("found");
        QTest::newRow("beside wins") << "app" << QStringList{"bin1"} << "app";
        QTest::newRow("path in order") << "empty" << QStringList{"none", "bin1", "bin2"} << "bin1";
        QTest::newRow("not runnable") << "stale" << QStringList{"bin2"} << "bin2";
        QTest::newRow("nowhere") << "empty" << QStringList{"none"} << QString();
    }
    void lookup() {
        QFETCH(QString, beside);
        QFETCH(QStringList, path);
        QFETCH(QString, found);
        program(QStringLiteral("app"));
        program(QStringLiteral("bin1"));
        program(QStringLiteral("bin2"));
        program(QStringLiteral("stale"), false);
        QDir().mkpath(dir.filePath(QStringLiteral("empty")));
        QStringList folders;
        for (const QString& p : path)
            folders << dir.filePath(p);
        const auto result = MediaDecoder::find(dir.filePath(beside), folders.join(u':'));
        QCOMPARE(result.value_or(QString()),
                 found.isEmpty() ? QString() : dir.filePath(found + QStringLiteral("/ffmpeg")));
    }

    void arguments() {
        QCOMPARE(MediaDecoder::audioArguments(QStringLiteral("in.ogg"), QStringLiteral("out.wav")),
                 (QStringList{"-nostdin", "-v", "error", "-i", "in.ogg", "-map", "0:a:0", "-vn", "-c:a",
                              "pcm_s16le", "-y", "out.wav"}));
        const QStringList video =
            MediaDecoder::videoArguments(QStringLiteral("in.mkv"), QStringLiteral("out.mp4"));
        QCOMPARE(video.size(), 25);
        QCOMPARE(video.mid(5, 4), (QStringList{"-map", "0:v:0", "-map", "0:a:0?"}));
        QCOMPARE(video.at(12), QStringLiteral("scale=trunc(iw/2)*2:trunc(ih/2)*2"));
        QCOMPARE(video.last(), QStringLiteral("out.mp4"));
    }
};

ORVANE_TEST_MAIN(MediaDecoderTest)
#include "MediaDecoderTest.moc"
