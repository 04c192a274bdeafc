#include "navigation/SidebarPinLayout.h"
#include "support/TestEnvironment.h"

using namespace orvane;
using Target = SidebarPinLayout::Target;

Q_DECLARE_METATYPE(std::optional<orvane::SidebarPinLayout::Target>)

namespace {
// 0 Home, 1 QUICK ACCESS, 2 P0, 3 child, 4 child, 5 P1, 6 P2, 7 LOCATIONS, 8 File System.
SidebarTreeSnapshot sample() {
    SidebarTreeSnapshot s;
    auto place = [](const char* title) { return SidebarPlace{title, QStringLiteral("/") + title, "folder"}; };
    s.append(place("Home"), 0, -1);
    s.append(SidebarPlace::section("Quick access"), 0, -1);
    const int p0 = s.append(place("P0"), 0, -1);
    s.append(place("P0/a"), 1, p0);
    s.append(place("P0/b"), 1, p0);
    s.append(place("P1"), 0, -1);
    s.append(place("P2"), 0, -1);
    s.append(SidebarPlace::section("Locations"), 0, -1);
    s.append(place("FS"), 0, -1);
    return s;
}
} // namespace

class SidebarPinLayoutTest : public QObject {
    Q_OBJECT
private slots:
    void target_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<std::optional<Target>>("expected");
        QTest::newRow("before the section") << 0 << std::optional<Target>();
        QTest::newRow("above the header") << 1 << std::optional<Target>(Target{0, 2});
        QTest::newRow("between children") << 4 << std::optional<Target>(Target{1, 5});
        QTest::newRow("above the last pin") << 6 << std::optional<Target>(Target{2, 6});
        QTest::newRow("above Locations") << 7 << std::optional<Target>(Target{3, 7});
        QTest::newRow("beyond the section") << 8 << std::optional<Target>();
    }
    void target() {
        QFETCH(int, row);
        QFETCH(std::optional<Target>, expected);
        QCOMPARE(SidebarPinLayout::of(sample()).target(row), expected);
    }

    // A drop beside its own row changes nothing and is refused; the whole Locations header means last.
    void drop_data() {
        QTest::addColumn<int>("source");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("lowerHalf");
        QTest::addColumn<std::optional<Target>>("expected");
        QTest::newRow("own row") << 1 << 5 << false << std::optional<Target>();
        QTest::newRow("just behind own") << 1 << 5 << true << std::optional<Target>();
        QTest::newRow("into own children") << 0 << 4 << false << std::optional<Target>();
        QTest::newRow("first to last") << 0 << 6 << true << std::optional<Target>(Target{3, 7});
        QTest::newRow("last to first") << 2 << 2 << false << std::optional<Target>(Target{0, 2});
        QTest::newRow("Locations header") << 0 << 7 << true << std::optional<Target>(Target{3, 7});
        QTest::newRow("Locations, last already") << 2 << 7 << false << std::optional<Target>();
        QTest::newRow("below everything") << 0 << 9 << false << std::optional<Target>();
    }
    void drop() {
        QFETCH(int, source);
        QFETCH(int, row);
        QFETCH(bool, lowerHalf);
        QFETCH(std::optional<Target>, expected);
        QCOMPARE(SidebarPinLayout::of(sample()).drop(source, row, lowerHalf), expected);
    }
};

ORVANE_TEST_MAIN(SidebarPinLayoutTest)
#include "SidebarPinLayoutTest.moc"
