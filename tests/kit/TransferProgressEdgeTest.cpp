#include "kit/TransferProgressEdge.h"
#include "support/TestEnvironment.h"

#include <QAccessible>
#include <QImage>
#include <QSignalSpy>
#include <QStandardPaths>

using namespace orvane;

namespace {
int bluePixels(TransferProgressEdge& edge) {
    QImage image(edge.size(), QImage::Format_ARGB32);
    image.fill(Qt::black);
    edge.render(&image);
    int count = 0;
    for (int x = 0; x < image.width(); ++x)
        count += qBlue(image.pixel(x, 1)) > 200 && qRed(image.pixel(x, 1)) < 100;
    return count;
}
} // namespace

class TransferProgressEdgeTest : public QObject {
    Q_OBJECT
private slots:
    void neverMovesBack_data();
    void neverMovesBack();
    void updateBeforeBeginIgnored();
    void drawsStubAtZero();
    void finishHidesAfterQuarterSecond();
    void beginRightAfterFinishKeepsBar();
    void accessibleProgressBar();
};

void TransferProgressEdgeTest::neverMovesBack_data() {
    QTest::addColumn<QList<double>>("updates");
    QTest::addColumn<double>("shown");
    QTest::newRow("rising") << QList<double>{0.1, 0.4, 0.7} << 0.7;
    QTest::newRow("falling back") << QList<double>{0.5, 0.2} << 0.5;
    QTest::newRow("capped") << QList<double>{1.5} << 0.99;
    QTest::newRow("negative") << QList<double>{-1.0} << 0.0;
}

void TransferProgressEdgeTest::neverMovesBack() {
    QFETCH(QList<double>, updates);
    QFETCH(double, shown);
    TransferProgressEdge edge;
    edge.begin();
    for (double value : updates)
        edge.update(value);
    QCOMPARE(edge.fraction(), shown);
    QCOMPARE(edge.percent(), int(shown * 100));
}

void TransferProgressEdgeTest::updateBeforeBeginIgnored() {
    TransferProgressEdge edge;
    edge.update(0.5);
    QVERIFY(!edge.running());
    QCOMPARE(edge.fraction(), 0.0);
    QCOMPARE(edge.height(), 3);
}

void TransferProgressEdgeTest::drawsStubAtZero() {
    TransferProgressEdge edge;
    edge.resize(200, 3);
    QCOMPARE(bluePixels(edge), 0);
    edge.begin();
    QCOMPARE(bluePixels(edge), 2);
    edge.update(0.5);
    QCOMPARE(bluePixels(edge), 100);
}

void TransferProgressEdgeTest::finishHidesAfterQuarterSecond() {
    TransferProgressEdge edge;
    QSignalSpy hidden(&edge, &TransferProgressEdge::hidden);
    edge.begin();
    edge.update(0.3);
    edge.finish();
    QCOMPARE(edge.fraction(), 1.0);
    QCOMPARE(edge.percent(), 100);
    QVERIFY(edge.running());
    QVERIFY(hidden.wait(2000));
    QVERIFY(!edge.running());
    QCOMPARE(edge.fraction(), 0.0);
}

// A second edge finished at the same moment tells when the quarter second has passed.
void TransferProgressEdgeTest::beginRightAfterFinishKeepsBar() {
    TransferProgressEdge edge, clock;
    QSignalSpy edgeHidden(&edge, &TransferProgressEdge::hidden);
    QSignalSpy clockHidden(&clock, &TransferProgressEdge::hidden);
    edge.begin();
    clock.begin();
    edge.finish();
    const QUuid finished = edge.generation();
    edge.begin();
    clock.finish();
    QVERIFY(edge.generation() != finished);
    QVERIFY(clockHidden.wait(2000));
    QVERIFY(edge.running());
    QCOMPARE(edgeHidden.count(), 0);
    edge.update(0.2);
    QCOMPARE(edge.fraction(), 0.2);
}

void TransferProgressEdgeTest::accessibleProgressBar() {
    TransferProgressEdge edge;
    edge.begin();
    edge.update(0.457);
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(&edge);
    QVERIFY(a);
    QCOMPARE(a->role(), QAccessible::ProgressBar);
    QCOMPARE(a->text(QAccessible::Name), QString("File transfer progress"));
    QCOMPARE(a->text(QAccessible::Value), QString("45"));
    QVERIFY(a->valueInterface());
    QCOMPARE(a->valueInterface()->currentValue().toInt(), 45);
}

ORVANE_TEST_MAIN(TransferProgressEdgeTest)
#include "TransferProgressEdgeTest.moc"
