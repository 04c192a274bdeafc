#include "preview/PreviewRenderers.h"
#include "platform/NativePath.h"
#include "platform/Platform.h"
#include "preview/PreviewLoader.h"
#include "preview/PreviewPane.h"
#include "preview/PreviewSelection.h"
#include "preview/PreviewView.h"
#include "support/TempTree.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <sys/stat.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {
QByteArray picture(int width, int height, const char* format) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

// A JPEG that a camera held on its side would write: stored wide, EXIF orientation 6 (turn right).
QByteArray sidewaysJpeg(int width, int height) {
    QByteArray jpeg = picture(width, height, "JPEG");
    const QByteArray tiff = QByteArray("II*\0\x08\0\0\0", 8) + QByteArray("\x01\0", 2) +
                            QByteArray("\x12\x01\x03\0\x01\0\0\0\x06\0\0\0", 12) + QByteArray(4, '\0');
    const QByteArray exif = QByteArray("Exif\0\0", 6) + tiff;
    const int length = int(exif.size()) + 2;
    jpeg.insert(2, QByteArray("\xFF\xE1", 2) + char(length >> 8) + char(length & 0xFF) + exif);
    return jpeg;
}

// A PNG whose header claims 30,000 × 30,000 pixels; decoding it whole would take 3.6 GB.
QByteArray hugePngHeader() {
    auto crc = [](const QByteArray& bytes) {
        quint32 c = 0xFFFFFFFF;
        for (char byte : bytes) {
            c ^= quint8(byte);
            for (int k = 0; k < 8; ++k)
                c = (c >> 1) ^ (0xEDB88320 & (0 - (c & 1)));
        }
        return ~c;
    };
    auto be = [](quint32 v) {
        const char bytes[] = {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
        return QByteArray(bytes, 4);
    };
    const QByteArray ihdr = "IHDR" + be(30000) + be(30000) + QByteArray("\x08\x06\0\0\0", 5);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + be(13) + ihdr + be(crc(ihdr)) + QByteArray(64, '\0');
}

QByteArray pdfPage() {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        QPainter painter(&writer);
        painter.drawText(400, 400, QStringLiteral("First page"));
        writer.newPage();
        painter.drawText(400, 400, QStringLiteral("Second page"));
    }
    return buffer.data();
}

// "picture WxH", "text N chars: start", "card" or "none".
QString described(const PreviewContent& c) {
    if (c.isNull()) return QStringLiteral("none");
    if (c.card) return QStringLiteral("card");
    if (!c.picture.isNull())
        return QStringLiteral("picture %1x%2").arg(c.picture.width()).arg(c.picture.height());
    return QStringLiteral("text %1 chars: %2").arg(c.text.size()).arg(c.text.left(12));
}
} // namespace

class PreviewRenderersTest : public QObject {
    Q_OBJECT
    TempTree tree;

private slots:
    void eachKindFindsItsRenderer_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("shown");
        QTest::newRow("png") << tree.file("small.png", picture(300, 200, "PNG")) << "picture 300x200";
        QTest::newRow("scaled into the bound")
            << tree.file("wide.png", picture(3000, 1000, "PNG")) << "picture 1200x400";
        QTest::newRow("EXIF orientation turns it upright")
            << tree.file("turned.jpg", sidewaysJpeg(300, 200)) << "picture 200x300";
        QTest::newRow("picture by its bytes, not its name")
            << tree.file("photo.dat", picture(40, 30, "PNG")) << "picture 40x30";
        QTest::newRow("not a picture after all") << tree.file("fake.png", "just words") << "card";
        QTest::newRow("pdf: the first page at the page's shape")
            << tree.file("paper.pdf", pdfPage()) << "picture 848x1200";
        QTest::newRow("text") << tree.file("notes.txt", "hello\nworld\n") << "text 12 chars: hello\nworld\n";
        QTest::newRow("source") << tree.file("main.cpp", "int main() {}\n") << "text 14 chars: int main() {";
        QTest::newRow("text without a name for it")
            << tree.file("README", "plain words") << "text 11 chars: plain words";
        QTest::newRow("only the first 256 KiB")
            << tree.file("long.log", QByteArray(300 * 1024, 'a')) << "text 262144 chars";
        QTest::newRow("a zero byte is no text") << tree.file("binary.txt", QByteArray("ab\0cd", 5)) << "card";
        QTest::newRow("audio waits for the players")
            << tree.file("song.mp3", QByteArray("ID3\x03\0\0\0\0\0\0", 10)) << "card";
        QTest::newRow("30,000 × 30,000 pixels claimed: a card, no crash")
            << tree.file("huge.png", hugePngHeader()) << "card";
        const QString fifo = tree.path("pipe.txt");
        QCOMPARE(::mkfifo(NativePath::encode(fifo).constData(), 0600), 0);
        QTest::newRow("a pipe would never end: not opened") << fifo << "none";
        QTest::newRow("a folder is no file") << tree.folder("Folder") << "none";
        QTest::newRow("gone") << tree.path("missing.txt") << "none";
    }
    void eachKindFindsItsRenderer() {
        QFETCH(QString, path);
        QFETCH(QString, shown);
        const QString got = described(PreviewRenderers().load(path, QSize(1200, 1200)));
        QVERIFY2(got.startsWith(shown), qPrintable(got));
    }

    // A character cut by the limit is left out, not shown as a stand-in.
    void theLimitNeverSplitsACharacter() {
        const QString path = tree.file("cut.txt", QByteArray(256 * 1024 - 1, 'a') + "\xC3\xA9");
        const PreviewContent content = PreviewRenderers().load(path, QSize(100, 100));
        QCOMPARE(content.text.size(), 256 * 1024 - 1);
        QVERIFY(!content.text.contains(QChar::ReplacementCharacter));
    }

    // Beside "bad\xFF.txt" lies the file its lookalike name would open.
    void aNameThatIsNotUtf8ReadsThatFile() {
        const QString exact = tree.rawFile("bad\xFF.txt", "the exact file");
        tree.rawFile("bad\xEF\xBF\xBD.txt", "the lookalike");
        QCOMPARE(PreviewRenderers().load(exact, QSize(100, 100)).text, QStringLiteral("the exact file"));
    }

    // A later request wins even when the earlier one finishes after it was made.
    void aLateResultForAnEarlierFileIsDropped() {
        PreviewLoader loader;
        QSignalSpy loaded(&loader, &PreviewLoader::loaded);
        loader.request(tree.file("first.txt", "first"), QSize(100, 100));
        loader.request(tree.file("second.txt", "second"), QSize(100, 100));
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(loaded.size(), 1);
        QCOMPARE(loaded[0][0].value<PreviewContent>().text, QStringLiteral("second"));
        loader.request(tree.file("third.txt", "third"), QSize(100, 100));
        loader.cancel();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(loaded.size(), 1);
    }

    void thePaneShowsWhatArrives_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("showing");
        QTest::addColumn<QString>("title");
        using S = PreviewView::Showing;
        QTest::newRow("text") << tree.file("pane.txt", "words") << int(S::Text) << "";
        QTest::newRow("picture") << tree.file("pane.png", picture(20, 10, "PNG")) << int(S::Picture) << "";
        const QString binary = tree.file("pane.bin", QByteArray("\0\1\2", 3));
        QTest::newRow("nothing shows it: the summary card")
            << binary << int(S::Card) << Entry::fromPath(binary).kind;
    }
    void thePaneShowsWhatArrives() {
        QFETCH(QString, path);
        QFETCH(int, showing);
        QFETCH(QString, title);
        PreviewPane pane;
        QSignalSpy shown(&pane, &PreviewPane::previewShown);
        pane.update({Entry::fromPath(path)});
        QVERIFY(shown.wait());
        QCOMPARE(int(pane.view()->showing()), showing);
        if (!title.isEmpty()) QCOMPARE(pane.view()->cardTitle(), title);
        pane.clear();
        QCOMPARE(pane.view()->cardTitle(), QStringLiteral("Select a file to preview"));
        QVERIFY(pane.fileName().isEmpty());
    }

    void theSelectionDecidesTheCard_data() {
        QTest::addColumn<QStringList>("locations");
        QTest::addColumn<QString>("card");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("metadata");
        const QString text = tree.file("one.txt", QByteArray(1500, 'x'));
        QTest::newRow("nothing") << QStringList{} << "Select a file to preview"
                                 << ""
                                 << "";
        QTest::newRow("a phone item is no file")
            << QStringList{"android://phone?location=1:2"} << "Select a file to preview"
            << ""
            << "";
        QTest::newRow("three items") << QStringList{text, tree.path("small.png"), tree.path("main.cpp")}
                                     << "3 items selected"
                                     << ""
                                     << "";
        QTest::newRow("one folder") << QStringList{tree.folder("Albums")} << "Folder"
                                    << "Albums"
                                    << "File folder";
        QTest::newRow("the root") << QStringList{"/"} << "Folder"
                                  << Platform::instance().word(PlatformWord::RootVolume) << "File folder";
        QTest::newRow("one readable file: no card, its preview loads") << QStringList{text} << ""
                                                                       << "one.txt"
                                                                       << " · 2 KB";
    }
    void theSelectionDecidesTheCard() {
        QFETCH(QStringList, locations);
        QFETCH(QString, card);
        QFETCH(QString, name);
        QFETCH(QString, metadata);
        std::vector<Entry> entries;
        for (const QString& location : locations) {
            Entry e = location.startsWith("android:") ? Entry{} : Entry::fromPath(location);
            if (location.startsWith("android:")) e.location = location;
            entries.push_back(e);
        }
        const PreviewSelection s = PreviewSelection::of(entries);
        QCOMPARE(s.card ? s.card->title : QString(), card);
        QCOMPARE(s.fileName, name);
        QVERIFY2(metadata.isEmpty() ? s.metadata.isEmpty() : s.metadata.endsWith(metadata),
                 qPrintable(s.metadata));
    }

    // The file went away after it was listed: the card says so rather than showing nothing.
    void aFileGoneSinceListingIsUnavailable() {
        const Entry gone = Entry::fromPath(tree.file("brief.txt", "soon gone"));
        QVERIFY(QFile::remove(tree.path("brief.txt")));
        const PreviewSelection s = PreviewSelection::of({gone});
        QCOMPARE(s.card->title, QStringLiteral("Preview unavailable"));
    }
};

QTEST_MAIN(PreviewRenderersTest)
#include "PreviewRenderersTest.moc"
