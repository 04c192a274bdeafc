#include "core/FolderColors.h"
#include "core/Settings.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>

using namespace orvane;
using orvane::test::TempTree;

class FolderColorsTest : public QObject {
    Q_OBJECT
private slots:
    void normalize_data();
    void normalize();
    void keys_data();
    void keys();
    void keptAcrossInstancesAndRemovedByDefault();
    void followsRenamesAndMoves();
    void badStoredValuesReadAsNothing();
};

void FolderColorsTest::normalize_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("lower case with blanks") << QStringLiteral("  ef6b73\n") << QStringLiteral("#EF6B73");
    QTest::newRow("one hash") << QStringLiteral("#ef6b73") << QStringLiteral("#EF6B73");
    QTest::newRow("two hashes") << QStringLiteral("##EF6B73") << QStringLiteral("#EF6B73");
    QTest::newRow("five digits") << QStringLiteral("EF6B7") << QString();
    QTest::newRow("seven digits") << QStringLiteral("EF6B731") << QString();
    QTest::newRow("not hexadecimal") << QStringLiteral("EF6G73") << QString();
    QTest::newRow("sign") << QStringLiteral("-F6B73") << QString();
}

void FolderColorsTest::normalize() {
    QFETCH(QString, text);
    QFETCH(QString, result);
    QCOMPARE(FolderColors::normalize(text).value_or(QString()), result);
}

void FolderColorsTest::keys_data() {
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QString>("key");
    QTest::newRow("local") << QUrl::fromLocalFile(QStringLiteral("/home/a/Photos/"))
                           << QStringLiteral("/home/a/Photos");
    QTest::newRow("local, dots") << QUrl::fromLocalFile(QStringLiteral("/home/a/x/../Photos"))
                                 << QStringLiteral("/home/a/Photos");
    QTest::newRow("phone") << QUrl(QStringLiteral("android://device-1/DCIM/Camera"))
                           << QStringLiteral("android:/DCIM/Camera");
    QTest::newRow("another phone, same folder")
        << QUrl(QStringLiteral("android://device-2/DCIM/Camera")) << QStringLiteral("android:/DCIM/Camera");
}

void FolderColorsTest::keys() {
    QFETCH(QUrl, url);
    QFETCH(QString, key);
    QCOMPARE(FolderColors::key(url), key);
}

void FolderColorsTest::keptAcrossInstancesAndRemovedByDefault() {
    TempTree tree;
    Settings settings(tree.path(QStringLiteral("prefs.ini")));
    const QUrl folder = QUrl::fromLocalFile(tree.folder(QStringLiteral("Photos")));
    const QUrl phone(QStringLiteral("android://dev/DCIM"));
    {
        FolderColors colors(settings);
        QSignalSpy changed(&colors, &FolderColors::changed);
        colors.set(QStringLiteral("ef6b73"), {folder, phone});
        QCOMPARE(changed.size(), 1);
    }
    FolderColors again(settings);
    QCOMPARE(again.hex(folder).value_or(QString()), QStringLiteral("#EF6B73"));
    QCOMPARE(again.hexAt(QStringLiteral("android:/DCIM")).value_or(QString()), QStringLiteral("#EF6B73"));
    again.set(std::nullopt, {folder});
    QVERIFY(!FolderColors(settings).hex(folder));
    QCOMPARE(FolderColors::color(QStringLiteral("#EF6B73")), QColor(0xEF, 0x6B, 0x73));
}

void FolderColorsTest::followsRenamesAndMoves() {
    TempTree tree;
    Settings settings(tree.path(QStringLiteral("prefs.ini")));
    FolderColors colors(settings);
    const QString raw = tree.path(QStringLiteral("a")) + QChar(0xDCFF); // a name whose byte is not UTF-8
    colors.set(QStringLiteral("#58C9CF"), {QUrl::fromLocalFile(tree.path(QStringLiteral("ab")))});
    colors.set(QStringLiteral("#AA8CE8"), {QUrl::fromLocalFile(tree.path(QStringLiteral("a/inner")))});
    colors.set(QStringLiteral("#75C991"), {QUrl::fromLocalFile(tree.path(QStringLiteral("a")))});
    colors.moved(tree.path(QStringLiteral("a")), raw);
    FolderColors reread(settings);
    QCOMPARE(reread.hexAt(FolderColors::keyOf(raw)).value_or(QString()), QStringLiteral("#75C991"));
    QCOMPARE(reread.hexAt(FolderColors::keyOf(raw + QStringLiteral("/inner"))).value_or(QString()),
             QStringLiteral("#AA8CE8"));
    QVERIFY(!reread.hexAt(FolderColors::keyOf(tree.path(QStringLiteral("a")))));
    // A sibling that only starts with the same letters stays.
    QCOMPARE(reread.hexAt(FolderColors::keyOf(tree.path(QStringLiteral("ab")))).value_or(QString()),
             QStringLiteral("#58C9CF"));
}

void FolderColorsTest::badStoredValuesReadAsNothing() {
    TempTree tree;
    const QString file = tree.path(QStringLiteral("prefs.ini"));
    {
        QSettings raw(file, QSettings::IniFormat);
        raw.setValue(QLatin1String(Settings::folderColorsKey), QStringLiteral("not a dictionary"));
    }
    Settings settings(file);
    QVERIFY(FolderColors(settings).hexAt(QStringLiteral("/x")) == std::nullopt);
}

ORVANE_TEST_MAIN(FolderColorsTest)
#include "FolderColorsTest.moc"
