#include "platform/TypeIndex.h"

#include <QMimeDatabase>
#include <QTest>
#include <algorithm>
#include <random>

using namespace orvane;

class TypeIndexTest : public QObject {
    Q_OBJECT

private slots:
    // Names whose glob several types claim equally; the common type is the one named.
    void prefersTheCommonType_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        QTest::newRow("json over JSON schema") << "config.json"
                                               << "application/json";
        QTest::newRow("upper-case suffix") << "CONFIG.JSON"
                                           << "application/json";
        QTest::newRow("ogg audio over its flavours") << "song.ogg"
                                                     << "audio/ogg";
        QTest::newRow("font over formula template") << "Inter.otf"
                                                    << "font/otf";
        QTest::newRow("transport stream over translations") << "clip.ts"
                                                            << "video/mp2t";
        QTest::newRow("weight decides first") << "page.html"
                                              << "text/html";
        QTest::newRow("longest suffix") << "backup.tar.gz"
                                        << "application/x-compressed-tar";
        QTest::newRow("case-sensitive glob") << "main.C"
                                             << "text/x-c++src";
        QTest::newRow("lower-case twin") << "main.c"
                                         << "text/x-csrc";
        QTest::newRow("whole name") << "Makefile"
                                    << "text/x-makefile";
    }
    void prefersTheCommonType() {
        QFETCH(QString, name);
        QFETCH(QString, type);
        const QMimeType expected = QMimeDatabase().mimeTypeForName(type);
        QVERIFY(expected.isValid());
        QCOMPARE(TypeIndex::shared().typeName(name), type);
        QCOMPARE(TypeIndex::shared().describe(name), TypeIndex::description(expected));
    }

    // The database writes some in lower case ("plain text document"); a column shows a sentence.
    void descriptionsStartWithACapital() {
        QCOMPARE(TypeIndex::shared().describe(QStringLiteral("notes.txt")),
                 QStringLiteral("Plain text document"));
        QCOMPARE(TypeIndex::shared().describe(QStringLiteral("paper.pdf")), QStringLiteral("PDF document"));
    }

    // The database hands its types over in hash order, which changes from run to run.
    void answersDoNotDependOnTheOrderOfTypes() {
        QList<QMimeType> types = QMimeDatabase().allMimeTypes();
        std::sort(types.begin(), types.end(),
                  [](const QMimeType& a, const QMimeType& b) { return a.name() < b.name(); });
        const TypeIndex sorted(types);
        std::reverse(types.begin(), types.end());
        const TypeIndex reversed(types);
        std::shuffle(types.begin(), types.end(), std::mt19937(7));
        const TypeIndex shuffled(types);
        const QStringList names = {"a.json", "a.ogg", "a.m", "a.dot", "a.mp2",  "a.3ds", "a.sub",
                                   "a.gpg",  "a.pm",  "a.t", "a.ui",  "README", "a.1",   "notes"};
        for (const QString& name : names) {
            QCOMPARE(reversed.typeName(name), sorted.typeName(name));
            QCOMPARE(shuffled.typeName(name), sorted.typeName(name));
        }
    }

    void unknownNamesHaveNoType() {
        QCOMPARE(TypeIndex::shared().describe(QStringLiteral("no-such-thing.zzqq")), QString());
        QCOMPARE(TypeIndex::shared().typeName(QStringLiteral(".zzqq")), QString());
    }
};

QTEST_GUILESS_MAIN(TypeIndexTest)
#include "TypeIndexTest.moc"
