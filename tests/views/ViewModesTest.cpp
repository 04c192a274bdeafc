#include "views/ViewModes.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class ViewModesTest : public QObject {
    Q_OBJECT

private slots:
    void sliderBothWays_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("size"); // 0 when the step keeps the size
        QTest::newRow("details") << 0 << 6 << 0.0;
        QTest::newRow("list") << 1 << 5 << 0.0;
        QTest::newRow("content") << 2 << 8 << 0.0;
        QTest::newRow("tiles") << 3 << 7 << 0.0;
        QTest::newRow("small") << 4 << 4 << 0.0;
        QTest::newRow("medium") << 5 << 3 << 0.0;
        QTest::newRow("large") << 6 << 2 << 0.0;
        QTest::newRow("extra large 160") << 7 << 1 << 160.0;
        QTest::newRow("extra large 256") << 8 << 1 << 256.0;
        QTest::newRow("extra large 320") << 9 << 1 << 320.0;
    }
    void sliderBothWays() {
        QFETCH(int, position);
        QFETCH(int, mode);
        QFETCH(double, size);
        const ViewModes::SliderChoice choice = ViewModes::modeForSlider(position);
        QCOMPARE(choice.mode, mode);
        QCOMPARE(choice.extraLargeSize.value_or(0), size);
        QCOMPARE(ViewModes::sliderForMode(mode, size > 0 ? size : 160), position);
    }

    void sliderEdges() {
        QCOMPARE(ViewModes::modeForSlider(-3).mode, 6);
        QCOMPARE(ViewModes::modeForSlider(42).extraLargeSize, std::optional<double>(320));
        // Sizes between the steps land on the step below them.
        QCOMPARE(ViewModes::sliderForMode(1, 200), 8);
        QCOMPARE(ViewModes::sliderForMode(1, 100), 7);
        QCOMPARE(ViewModes::sliderToolTip(1, 256), QStringLiteral("Icons · 256 pt"));
        QCOMPARE(ViewModes::sliderToolTip(7, 256), QStringLiteral("Tiles"));
        QCOMPARE(ViewModes::name(0), QString());
    }

    void wheel_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("delta");
        QTest::addColumn<int>("result"); // -1 for none
        QTest::newRow("details up goes to medium") << 6 << 1.0 << 3;
        QTest::newRow("details down goes to small") << 6 << -1.0 << 4;
        QTest::newRow("small down stays") << 4 << -1.0 << 4;
        QTest::newRow("extra large up stays") << 1 << 1.0 << 1;
        QTest::newRow("large down") << 2 << -1.0 << 3;
        QTest::newRow("list up") << 5 << 1.0 << 3;
        QTest::newRow("too small a delta") << 3 << 0.005 << -1;
    }
    void wheel() {
        QFETCH(int, mode);
        QFETCH(double, delta);
        QFETCH(int, result);
        QCOMPARE(ViewModes::wheelMode(mode, delta).value_or(-1), result);
    }
};

ORVANE_TEST_MAIN(ViewModesTest)
#include "ViewModesTest.moc"
