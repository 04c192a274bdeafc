// Decoding of bridge lines: what is a reply, what is a progress line, what is a transport failure.
#include "phone/PhoneReply.h"
#include "support/TestEnvironment.h"

#include <QStandardPaths>

using namespace orvane;

class PhoneReplyTest : public QObject {
    Q_OBJECT

private slots:
    void decoding_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("decodes");
        QTest::addColumn<bool>("isProgress");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* name, const char* line, bool decodes, bool progress = false,
                            const QString& error = {}) {
            QTest::newRow(name) << QByteArray(line) << decodes << progress << error;
        };
        row("empty object", "{}", true);
        row("error", R"({"error":"Phone is locked."})", true, false, QStringLiteral("Phone is locked."));
        row("progress", R"({"progress":0.25})", true, true);
        row("progress with an error is still progress", R"({"progress":1,"error":"x"})", true, true,
            QStringLiteral("x"));
        row("null progress is final", R"({"progress":null})", true);
        row("null error is absent", R"({"error":null,"name":null})", true);
        row("unknown keys", R"({"bridge":{"v":[1,2,{}]},"error":"e","x":null})", true, false,
            QStringLiteral("e"));
        row("surrounding blanks", " {} \r", true);
        row("progress in quotes", R"({"progress":"0.5"})", false);
        row("negative id", R"({"id":-1})", false);
        row("id beyond 32 bits", R"({"id":4294967296})", false);
        row("fractional id", R"({"id":1.5})", false);
        row("id in quotes", R"({"id":"7"})", false);
        row("width as bool", R"({"width":true})", false);
        row("created as number", R"({"created":20240101})", false);
        row("name as number", R"({"name":5})", false);
        row("error as object", R"({"error":{}})", false);
        row("items as object", R"({"items":{}})", false);
        row("empty line", "", false);
        row("array", "[]", false);
        row("string", "\"ok\"", false);
        // Spelled without a raw string: moc counts the braces inside one.
        row("truncated", "{\"items\":[{\"id\":7,\"name\":\"trunc", false);
        row("trailing text", "{} {}", false);
        row("not UTF-8 JSON", "\xff\xfe{}", false);
    }

    void decoding() {
        QFETCH(QByteArray, line);
        QFETCH(bool, decodes);
        QFETCH(bool, isProgress);
        QFETCH(QString, error);
        const std::optional<PhoneReply> reply = PhoneReply::decode(line);
        QCOMPARE(bool(reply), decodes);
        if (!reply) return;
        QCOMPARE(bool(reply->progress), isProgress);
        QCOMPARE(reply->error.value_or(QString()), error);
    }

    void numbersKeepTheirRange() {
        const auto reply = PhoneReply::decode(R"({"id":4294967295,"width":0,"height":1e3,"progress":1})");
        QVERIFY(reply);
        QCOMPARE(reply->id, std::optional<quint32>(4294967295u));
        QCOMPARE(reply->width, std::optional<quint32>(0));
        QCOMPARE(reply->height, std::optional<quint32>(1000));
        QCOMPARE(reply->progress, std::optional<double>(1.0));
    }

    void items_data() {
        QTest::addColumn<QByteArray>("item");
        QTest::addColumn<bool>("decodes");
        QTest::newRow("all required")
            << QByteArray(R"({"id":1,"storage":65537,"name":"a","folder":false,"size":3})") << true;
        QTest::newRow("optional nulls")
            << QByteArray(
                   R"({"id":1,"storage":2,"name":"a","folder":true,"size":0,"modified":null,"created":null,"width":null})")
            << true;
        QTest::newRow("missing size")
            << QByteArray(R"({"id":1,"storage":2,"name":"a","folder":false})") << false;
        QTest::newRow("null name") << QByteArray(
                                          R"({"id":1,"storage":2,"name":null,"folder":false,"size":0})")
                                   << false;
        QTest::newRow("folder as number")
            << QByteArray(R"({"id":1,"storage":2,"name":"a","folder":1,"size":0})") << false;
        QTest::newRow("negative size")
            << QByteArray(R"({"id":1,"storage":2,"name":"a","folder":false,"size":-1})") << false;
        QTest::newRow("storage beyond 32 bits")
            << QByteArray(R"({"id":1,"storage":4294967296,"name":"a","folder":false,"size":0})") << false;
        QTest::newRow("modified as text")
            << QByteArray(R"({"id":1,"storage":2,"name":"a","folder":false,"size":0,"modified":"now"})")
            << false;
        QTest::newRow("item not an object") << QByteArray("5") << false;
    }

    // One bad item makes the whole reply undecodable.
    void items() {
        QFETCH(QByteArray, item);
        QFETCH(bool, decodes);
        const auto reply = PhoneReply::decode(
            R"({"items":[{"id":9,"storage":9,"name":"ok","folder":true,"size":0},)" + item + "]}");
        QCOMPARE(bool(reply), decodes);
        if (reply) QCOMPARE(reply->items->size(), 2);
    }

    void itemFieldsAreExact() {
        const auto reply = PhoneReply::decode(
            R"({"items":[{"id":4294967295,"storage":131073,"name":"مجلد","folder":true,"size":9007199254740993,)"
            R"("modified":1700000000.5,"created":"20240314T090512.0","width":4000,"height":3000,"extra":1}]})");
        QVERIFY(reply && reply->items);
        const PhoneItem& item = reply->items->first();
        QCOMPARE(item.id, 4294967295u);
        QCOMPARE(item.storage, 131073u);
        QCOMPARE(item.name, QStringLiteral("مجلد"));
        QCOMPARE(item.size, 9007199254740993ull);
        QCOMPARE(item.modified, std::optional<double>(1700000000.5));
        QCOMPARE(item.created, std::optional<QString>(QStringLiteral("20240314T090512.0")));
        QCOMPARE(item.width, std::optional<quint32>(4000));
        QCOMPARE(item.textKey(), QStringLiteral("131073:4294967295"));
        QCOMPARE(PhoneItem::fromJson(item.toJson()), std::optional<PhoneItem>(item));
    }

    void theFailureReplyCarriesOnlyItsError() {
        const PhoneReply failure = PhoneReply::failure(QStringLiteral("gone"));
        PhoneReply expected;
        expected.error = QStringLiteral("gone");
        QCOMPARE(failure, expected);
    }
};

ORVANE_TEST_MAIN(PhoneReplyTest)
#include "PhoneReplyTest.moc"
