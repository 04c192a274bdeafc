#include "views/IconGridSelection.h"
#include "support/TestEnvironment.h"

#include <QItemSelectionModel>
#include <QStandardItemModel>

using namespace orvane;

// One step of type-select: the text typed, the seconds since the first press, the name selected after.
Q_DECLARE_METATYPE(orvane::GridKey)

struct Typed {
    QString text;
    double at;
    QString selected;
};
Q_DECLARE_METATYPE(QList<Typed>)

class IconGridSelectionTest : public QObject {
    Q_OBJECT
    QStringList names;
    std::unique_ptr<QStandardItemModel> model;
    std::unique_ptr<QItemSelectionModel> selectionModel;
    IconGridSelection grid;
    IconGridLayout layout;

    // A listing of those names in 5 columns, with three columns in the model as the table has.
    void listing(const QStringList& items) {
        names = items;
        selectionModel.reset();
        model = std::make_unique<QStandardItemModel>(int(items.size()), 3);
        selectionModel = std::make_unique<QItemSelectionModel>(model.get());
        grid.setSelectionModel(selectionModel.get());
        layout = layoutIconGrid(3, int(items.size()), QSizeF(540, 500), 160);
    }
    void listing(int count) {
        QStringList items;
        for (int i = 0; i < count; ++i)
            items << QStringLiteral("item %1").arg(i);
        listing(items);
    }
    QList<int> selected() const {
        QList<int> rows;
        for (int row = 0; row < model->rowCount(); ++row)
            if (selectionModel->isRowSelected(row)) rows << row;
        return rows;
    }

private slots:
    void primaryArrowsMoveTheRingApart() {
        listing(20);
        grid.selectOnly(0);
        grid.move(layout, GridKey::Right, true, false);
        grid.move(layout, GridKey::Right, true, false);
        QCOMPARE(grid.focus, std::optional<int>(2));
        QVERIFY(grid.controlFocusMode);
        QCOMPARE(selected(), QList<int>({0}));
        QVERIFY(grid.pick(false));
        QCOMPARE(selected(), QList<int>({0, 2}));
        // Picking again takes it out, whole row and all.
        QVERIFY(grid.pick(false));
        QCOMPARE(selected(), QList<int>({0}));
        QVERIFY(!selectionModel->isSelected(model->index(2, 1)));
        grid.move(layout, GridKey::Down, false, false);
        QCOMPARE(selected(), QList<int>({7}));
        QVERIFY(!grid.controlFocusMode);
        // Space without Primary and outside the mode is not the grid's.
        QVERIFY(!grid.pick(false));
    }

    void firstArrowLandsOnTheStart_data() {
        QTest::addColumn<GridKey>("key");
        QTest::addColumn<int>("target");
        QTest::newRow("right") << GridKey::Right << 0;
        QTest::newRow("down") << GridKey::Down << 0;
        QTest::newRow("left") << GridKey::Left << 11;
        QTest::newRow("up") << GridKey::Up << 11;
        QTest::newRow("page down moves") << GridKey::PageDown << 11;
        QTest::newRow("end") << GridKey::End << 11;
    }
    void firstArrowLandsOnTheStart() {
        QFETCH(GridKey, key);
        QFETCH(int, target);
        listing(12);
        QCOMPARE(grid.move(layout, key, false, false), std::optional<int>(target));
        QCOMPARE(selected(), QList<int>({target}));
    }

    void shiftExtendsFromTheAnchor() {
        listing(30);
        grid.selectOnly(7);
        grid.move(layout, GridKey::Down, false, true);
        QCOMPARE(selected(), QList<int>({7, 8, 9, 10, 11, 12}));
        grid.move(layout, GridKey::Up, false, true);
        grid.move(layout, GridKey::Left, false, true);
        QCOMPARE(selected(), QList<int>({6, 7}));
        QCOMPARE(grid.anchor, std::optional<int>(7));
    }

    void emptyListingConsumesKeys() {
        listing(0);
        QCOMPARE(grid.move(layout, GridKey::Down, false, false), std::nullopt);
        QVERIFY(grid.pick(true));
        QCOMPARE(grid.typeSelect(QStringLiteral("a"), 0, [](int) { return QString(); }), std::nullopt);
    }

    void typeSelect_data() {
        QTest::addColumn<QList<Typed>>("steps");
        QTest::newRow("one letter finds the first")
            << QList<Typed>{{QStringLiteral("b"), 0, QStringLiteral("Banana")}};
        QTest::newRow("the same letter again steps")
            << QList<Typed>{{QStringLiteral("b"), 0, QStringLiteral("Banana")},
                            {QStringLiteral("b"), 0.3, QStringLiteral("blueberry")},
                            {QStringLiteral("B"), 0.6, QStringLiteral("bread")},
                            {QStringLiteral("b"), 0.9, QStringLiteral("Banana")}};
        QTest::newRow("two letters make a prefix from the focus")
            << QList<Typed>{{QStringLiteral("b"), 0, QStringLiteral("Banana")},
                            {QStringLiteral("r"), 0.5, QStringLiteral("bread")}};
        QTest::newRow("a pause starts afresh")
            << QList<Typed>{{QStringLiteral("b"), 0, QStringLiteral("Banana")},
                            {QStringLiteral("r"), 0.9, QStringLiteral("raspberry")}};
        QTest::newRow("accents fold away")
            << QList<Typed>{{QStringLiteral("e"), 0, QStringLiteral("Évian")},
                            {QStringLiteral("v"), 0.2, QStringLiteral("Évian")}};
        QTest::newRow("no match changes nothing")
            << QList<Typed>{{QStringLiteral("c"), 0, QStringLiteral("cherry")},
                            {QStringLiteral("z"), 2, QStringLiteral("cherry")}};
        QTest::newRow("case folds beyond ASCII")
            << QList<Typed>{{QStringLiteral("STRASSE"), 0, QStringLiteral("straße 3")}};
    }
    void typeSelect() {
        QFETCH(QList<Typed>, steps);
        listing({QStringLiteral("apple"), QStringLiteral("Banana"), QStringLiteral("blueberry"),
                 QStringLiteral("cherry"), QStringLiteral("bread"), QStringLiteral("Évian"),
                 QStringLiteral("raspberry"), QStringLiteral("straße 3")});
        for (const Typed& step : steps) {
            grid.typeSelect(step.text, 100 + step.at, [&](int index) { return names[index]; });
            const QList<int> rows = selected();
            QCOMPARE(rows.size(), 1);
            QCOMPARE(names[rows.first()], step.selected);
            QCOMPARE(grid.focus, std::optional<int>(rows.first()));
        }
    }

    void clicks() {
        listing(20);
        QVERIFY(!grid.press(3, false, false));
        QCOMPARE(selected(), QList<int>({3}));
        QVERIFY(!grid.press(6, false, true));
        QCOMPARE(selected(), QList<int>({3, 4, 5, 6}));
        QVERIFY(!grid.press(10, true, false));
        QCOMPARE(selected(), QList<int>({3, 4, 5, 6, 10}));
        // Shift and Primary add the range from the new anchor.
        grid.press(12, true, true);
        QCOMPARE(selected(), QList<int>({3, 4, 5, 6, 10, 11, 12}));
        // A plain press inside a multiple selection keeps it for a drag.
        QVERIFY(grid.press(4, false, false));
        QCOMPARE(selected().size(), 7);
        grid.press(std::nullopt, true, false);
        QCOMPARE(selected().size(), 7);
        grid.press(std::nullopt, false, false);
        QVERIFY(selected().isEmpty());
    }

    void rubberBand() {
        listing(20);
        grid.selectOnly(19);
        // From the middle of item 0 to the middle of item 6: two rows of two.
        const QRectF band(layout.frame(0).center(), layout.frame(6).center());
        grid.beginBand(false);
        grid.updateBand(layout, band);
        QCOMPARE(selected(), QList<int>({0, 1, 5, 6}));
        grid.beginBand(true);
        grid.updateBand(layout, QRectF(layout.frame(18).center(), QSizeF(1, 1)));
        QCOMPARE(selected(), QList<int>({0, 1, 5, 6, 18}));
        // Shrinking the band gives back what it left.
        grid.updateBand(layout, QRectF());
        QCOMPARE(selected(), QList<int>({0, 1, 5, 6}));
    }
};

ORVANE_TEST_MAIN(IconGridSelectionTest)
#include "IconGridSelectionTest.moc"
