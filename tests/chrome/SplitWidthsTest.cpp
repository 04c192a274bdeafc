#include "chrome/SplitWidths.h"

#include <QTest>

using namespace orvane;

class SplitWidthsTest : public QObject {
    Q_OBJECT

private slots:
    // Navigation 240 preferred (150 at least), details 300 preferred (260 at least), the file area
    // comfortable at 500.
    void theFileAreaComesFirst_data() {
        QTest::addColumn<int>("available");
        QTest::addColumn<bool>("details");
        QTest::addColumn<int>("navigation");
        QTest::addColumn<int>("files");
        QTest::addColumn<int>("detailsWidth");
        QTest::newRow("wide") << 1400 << true << 240 << 860 << 300;
        QTest::newRow("navigation gives way first") << 1000 << true << 200 << 500 << 300;
        QTest::newRow("then the details pane") << 930 << true << 150 << 500 << 280;
        QTest::newRow("then the file area") << 700 << true << 150 << 290 << 260;
        QTest::newRow("no details pane") << 700 << false << 200 << 500 << 0;
        QTest::newRow("narrower than the panes") << 300 << true << 150 << 0 << 260;
    }
    void theFileAreaComesFirst() {
        QFETCH(int, available);
        QFETCH(bool, details);
        QFETCH(int, navigation);
        QFETCH(int, files);
        QFETCH(int, detailsWidth);
        SplitWidths::Needs needs;
        needs.available = available;
        needs.navigationPreferred = 240;
        needs.navigationMinimum = 150;
        needs.detailsShown = details;
        needs.detailsPreferred = 300;
        needs.detailsMinimum = 260;
        needs.filesComfortable = 500;
        const SplitWidths::Widths w = SplitWidths::share(needs);
        QCOMPARE(w.navigation, navigation);
        QCOMPARE(w.files, files);
        QCOMPARE(w.details, detailsWidth);
    }
};

QTEST_APPLESS_MAIN(SplitWidthsTest)
#include "SplitWidthsTest.moc"
