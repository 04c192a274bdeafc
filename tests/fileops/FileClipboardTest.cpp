#include "fileops/FileClipboard.h"
#include "platform/NativePath.h"
#include "support/TestEnvironment.h"

#include <QClipboard>
#include <QMimeData>
#include <QStandardPaths>

using namespace orvane;

namespace {
QList<QUrl> files(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls << QUrl::fromLocalFile(path);
    return urls;
}

const QMimeData* board() {
    return QGuiApplication::clipboard()->mimeData();
}
} // namespace

class FileClipboardTest : public QObject {
    Q_OBJECT
private slots:
    void init() { FileClipboard::shared().clearCut(); }
    void copyIsNoCut();
    void cutEndsWhenAnythingElseIsCopied();
    void cutSpentAfterItsPaste();
    void cutMarksForOtherDesktops();
    void foreignCutMarksPasteAsMove_data();
    void foreignCutMarksPasteAsMove();
    void onlyFileUrlsArePasted();
    void copyPathText();
    void namesThatAreNotUtf8();
};

void FileClipboardTest::copyIsNoCut() {
    FileClipboard& clip = FileClipboard::shared();
    const qint64 before = clip.pasteboardChangeCount();
    clip.setClipboard(files({"/tmp/a.txt"}), false);
    QVERIFY(clip.pasteboardChangeCount() > before);
    QCOMPARE(clip.changeCount, clip.pasteboardChangeCount());
    QVERIFY(clip.urls.isEmpty());
    QVERIFY(!clip.pasteMoves());
    QCOMPARE(clip.fileUrls(), files({"/tmp/a.txt"}));
    QCOMPARE(board()->text(), QString("/tmp/a.txt"));
}

void FileClipboardTest::cutEndsWhenAnythingElseIsCopied() {
    FileClipboard& clip = FileClipboard::shared();
    clip.setClipboard(files({"/tmp/a.txt", "/tmp/b.txt"}), true);
    QVERIFY(clip.pasteMoves());
    QVERIFY(clip.isCut(QUrl::fromLocalFile("/tmp/b.txt")));
    QGuiApplication::clipboard()->setText("copied in some other program");
    QVERIFY(!clip.cutHolds());
    QVERIFY(!clip.pasteMoves());
    QVERIFY(!clip.isCut(QUrl::fromLocalFile("/tmp/b.txt")));
}

void FileClipboardTest::cutSpentAfterItsPaste() {
    FileClipboard& clip = FileClipboard::shared();
    clip.setClipboard(files({"/tmp/a.txt", "/tmp/b.txt"}), true);
    clip.finishMove({"/tmp/a.txt"}); // b failed and stays cut
    QVERIFY(clip.pasteMoves());
    QCOMPARE(clip.urls, files({"/tmp/b.txt"}));
    clip.finishMove({"/tmp/b.txt"});
    QCOMPARE(clip.changeCount, -1);
    QVERIFY(!clip.pasteMoves()); // the untouched clipboard now pastes as a copy
    QCOMPARE(clip.fileUrls().size(), 2);
}

void FileClipboardTest::cutMarksForOtherDesktops() {
    FileClipboard::shared().setClipboard(files({"/tmp/a b.txt", "/tmp/ملف"}), true);
    QCOMPARE(board()->data(FileClipboard::gnomeFormat()),
             QByteArray("cut\nfile:///tmp/a%20b.txt\nfile:///tmp/%D9%85%D9%84%D9%81"));
    QCOMPARE(board()->data(FileClipboard::kdeCutFormat()), QByteArray("1"));
    FileClipboard::shared().setClipboard(files({"/tmp/a.txt"}), false);
    QCOMPARE(board()->data(FileClipboard::gnomeFormat()), QByteArray("copy\nfile:///tmp/a.txt"));
    QVERIFY(!board()->hasFormat(FileClipboard::kdeCutFormat()));
}

void FileClipboardTest::foreignCutMarksPasteAsMove_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<bool>("moves");
    QTest::newRow("gnome cut") << FileClipboard::gnomeFormat() << QByteArray("cut\nfile:///tmp/x") << true;
    QTest::newRow("gnome copy") << FileClipboard::gnomeFormat() << QByteArray("copy\nfile:///tmp/x") << false;
    QTest::newRow("kde cut") << FileClipboard::kdeCutFormat() << QByteArray("1") << true;
    QTest::newRow("kde copy") << FileClipboard::kdeCutFormat() << QByteArray("0") << false;
}

void FileClipboardTest::foreignCutMarksPasteAsMove() {
    QFETCH(QString, format);
    QFETCH(QByteArray, mark);
    QFETCH(bool, moves);
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile("/tmp/x")});
    data->setData(format, mark);
    QGuiApplication::clipboard()->setMimeData(data);
    FileClipboard& clip = FileClipboard::shared();
    QCOMPARE(clip.fileUrls(), files({"/tmp/x"}));
    QCOMPARE(clip.pasteMoves(), moves);
    clip.finishMove({"/tmp/x"});
    QVERIFY(!clip.pasteMoves()); // one paste spends another program's cut too
}

void FileClipboardTest::onlyFileUrlsArePasted() {
    auto* data = new QMimeData;
    data->setUrls({QUrl("https://example.invalid/a"), QUrl::fromLocalFile("/tmp/y")});
    QGuiApplication::clipboard()->setMimeData(data);
    QCOMPARE(FileClipboard::shared().fileUrls(), files({"/tmp/y"}));
    auto* gnomeOnly = new QMimeData;
    gnomeOnly->setData(FileClipboard::gnomeFormat(), "copy\nfile:///tmp/z\nfile:///tmp/w");
    QGuiApplication::clipboard()->setMimeData(gnomeOnly);
    QCOMPARE(FileClipboard::shared().fileUrls(), files({"/tmp/z", "/tmp/w"}));
    QGuiApplication::clipboard()->setText("plain");
    QVERIFY(!FileClipboard::shared().canPaste());
}

void FileClipboardTest::copyPathText() {
    QCOMPARE(FileClipboard::pathText({"/tmp/a b", "/tmp/say \"hi\""}),
             QString("\"/tmp/a b\"\n\"/tmp/say \"hi\"\""));
    FileClipboard& clip = FileClipboard::shared();
    clip.setClipboard(files({"/tmp/a.txt"}), true);
    clip.copyPaths({"/tmp/a.txt"});
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("\"/tmp/a.txt\""));
    QVERIFY(!clip.pasteMoves()); // copying a path is a clipboard write like any other
}

// The uri-list carries the bytes percent-encoded exactly; what comes back is the same path, whoever wrote it.
void FileClipboardTest::namesThatAreNotUtf8() {
    const QString stray = NativePath::decode(QByteArray("/tmp/bad\xFF.txt"));
    const QString lookalike = NativePath::decode(QByteArray("/tmp/bad\xEF\xBF\xBD.txt"));
    FileClipboard& clip = FileClipboard::shared();
    clip.setClipboard(files({stray, lookalike}), true);
    QCOMPARE(board()->data("text/uri-list"),
             QByteArray("file:///tmp/bad%FF.txt\r\nfile:///tmp/bad%EF%BF%BD.txt\r\n"));
    QCOMPARE(board()->data(FileClipboard::gnomeFormat()),
             QByteArray("cut\nfile:///tmp/bad%FF.txt\nfile:///tmp/bad%EF%BF%BD.txt"));
    QCOMPARE(clip.fileUrls(), files({stray, lookalike}));
    QVERIFY(clip.isCut(QUrl::fromLocalFile(stray)));
    auto* foreign = new QMimeData;
    foreign->setData("text/uri-list", "# from another program\r\nfile:///tmp/bad%FF.txt\r\n");
    QGuiApplication::clipboard()->setMimeData(foreign);
    QCOMPARE(clip.fileUrls(), files({stray}));
}

ORVANE_TEST_MAIN(FileClipboardTest)
#include "FileClipboardTest.moc"
