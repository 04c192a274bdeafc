#include "platform/NativePath.h"
#include "support/TestEnvironment.h"

#include <QUrl>

using namespace orvane;

class NativePathTest : public QObject {
    Q_OBJECT

private slots:
    // Each row is a name as a directory may hold it; every one must come back byte for byte.
    void bytesSurviveText_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("shown");
        const QString fffd(QChar::ReplacementCharacter);
        QTest::newRow("ascii") << QByteArray("tmp/notes.txt") << "tmp/notes.txt";
        QTest::newRow("arabic") << QString("ملاحظات.txt").toUtf8() << "ملاحظات.txt";
        QTest::newRow("outside the BMP") << QByteArray("a\xF0\x9F\x98\x80") << "a\U0001F600";
        QTest::newRow("stray byte") << QByteArray("bad\xFF.txt") << "bad" + fffd + ".txt";
        QTest::newRow("real U+FFFD") << QByteArray("bad\xEF\xBF\xBD.txt") << "bad" + fffd + ".txt";
        QTest::newRow("latin-1") << QByteArray("caf\xE9") << "caf" + fffd;
        QTest::newRow("encoded surrogate") << QByteArray("\xED\xB3\xBF") << fffd + fffd + fffd;
        QTest::newRow("overlong slash") << QByteArray("\xC0\xAF") << fffd + fffd;
        QTest::newRow("cut sequence") << QByteArray("x\xE2\x82") << "x" + fffd + fffd;
        QTest::newRow("beyond U+10FFFF") << QByteArray("\xF4\x90\x80\x80") << fffd + fffd + fffd + fffd;
        QTest::newRow("escape after a pair") << QByteArray("\xF0\x9F\x98\x80\xFF") << "\U0001F600" + fffd;
    }
    void bytesSurviveText() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, shown);
        const QString text = NativePath::decode(bytes);
        QCOMPARE(NativePath::encode(text), bytes);
        QCOMPARE(NativePath::display(text), shown);
        QCOMPARE(NativePath::holdsRawBytes(text), !bytes.isValidUtf8());
        // The URL of the clipboard carries the bytes, and so does the program's own URL of the path.
        QCOMPARE(NativePath::fromEncodedUrl(NativePath::encodedUrl("/" + text)), "/" + text);
        QCOMPARE(QUrl::fromLocalFile("/" + text).toLocalFile(), "/" + text);
    }

    void foreignUrls_data() {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("plain") << QByteArray("file:///tmp/a%20b") << QByteArray("/tmp/a b");
        QTest::newRow("localhost") << QByteArray("file://localhost/tmp/x") << QByteArray("/tmp/x");
        QTest::newRow("other host") << QByteArray("file://elsewhere/tmp/x") << QByteArray();
        QTest::newRow("not a file") << QByteArray("https://example.org/x") << QByteArray();
    }
    void foreignUrls() {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, path);
        QCOMPARE(NativePath::encode(NativePath::fromEncodedUrl(url)), path);
    }
};

ORVANE_TEST_MAIN(NativePathTest)
#include "NativePathTest.moc"
