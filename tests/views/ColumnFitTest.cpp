#include "views/ColumnFit.h"

#include <QTest>

using namespace orvane;

namespace {

// Widths with room enough, and minimums.
const QHash<QString, QPair<int, int>> sizes = {{"name", {355, 160}},      {"modified", {200, 180}},
                                               {"dimensions", {155, 85}}, {"kind", {160, 85}},
                                               {"size", {90, 85}},        {"created", {200, 180}}};

QString shown(const ColumnFit::Fit& fit, const QStringList& keys) {
    QStringList parts;
    for (const QString& key : keys)
        if (fit.widths.contains(key)) parts << key + u' ' + QString::number(fit.widths.value(key));
    return parts.join(QStringLiteral(", "));
}

} // namespace

class ColumnFitTest : public QObject {
    Q_OBJECT

private slots:
    void columnsNarrowThenGiveWay_data() {
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<int>("available");
        QTest::addColumn<QStringList>("leftOut");
        QTest::addColumn<QString>("widths");
        const QStringList standard = {"name", "modified", "dimensions", "kind", "size"};
        QTest::newRow("room enough") << standard << 1000 << QStringList()
                                     << "name 160, modified 200, dimensions 155, kind 160, size 90";
        QTest::newRow("the least needed narrow first")
            << standard << 700 << QStringList() << "name 160, modified 200, dimensions 90, kind 160, size 90";
        QTest::newRow("all at their minimum")
            << standard << 595 << QStringList() << "name 160, modified 180, dimensions 85, kind 85, size 85";
        QTest::newRow("one short") << standard << 594 << QStringList{"dimensions"}
                                   << "name 160, modified 200, kind 144, size 90";
        QTest::newRow("narrow") << standard << 300 << QStringList{"dimensions", "kind", "modified"}
                                << "name 160, size 90";
        QTest::newRow("name alone") << standard << 100
                                    << QStringList{"dimensions", "kind", "modified", "size"} << "name 160";
        QTest::newRow("created goes first") << QStringList{"name", "kind", "size", "created"} << 500
                                            << QStringList{"created"} << "name 160, kind 160, size 90";
    }
    void columnsNarrowThenGiveWay() {
        QFETCH(QStringList, keys);
        QFETCH(int, available);
        QFETCH(QStringList, leftOut);
        QFETCH(QString, widths);
        QList<ColumnFit::Column> columns;
        for (const QString& key : keys)
            columns.append({key, sizes.value(key).first, sizes.value(key).second});
        const ColumnFit::Fit fit = ColumnFit::fit(columns, available);
        QCOMPARE(fit.leftOut, leftOut);
        QCOMPARE(shown(fit, keys), widths);
    }
};

QTEST_APPLESS_MAIN(ColumnFitTest)
#include "ColumnFitTest.moc"
