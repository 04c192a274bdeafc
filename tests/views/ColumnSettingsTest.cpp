#include "views/ColumnSettings.h"
#include "core/Settings.h"
#include "support/TestEnvironment.h"

#include <QSettings>
#include <QTemporaryDir>
#include <memory>

using namespace orvane;

class ColumnSettingsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;

    // A fresh reader of the same file, as the next launch would have.
    std::unique_ptr<Settings> open() const { return std::make_unique<Settings>(dir->filePath("prefs.ini")); }
    std::unique_ptr<QSettings> raw() const {
        return std::make_unique<QSettings>(dir->filePath("prefs.ini"), QSettings::IniFormat);
    }

private slots:
    void init() { dir = std::make_unique<QTemporaryDir>(); }

    void firstRead_data() {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("introduced");
        QTest::addColumn<QStringList>("expected");
        const QStringList fresh{"name", "modified", "dimensions", "kind", "size"};
        QTest::newRow("fresh install") << QVariant() << false << fresh;
        QTest::newRow("upgrade keeps the user's list and adds dimensions")
            << QVariant(QStringList{"size", "name", "created"}) << false
            << QStringList{"name", "dimensions", "size", "created"};
        QTest::newRow("after the migration nothing is added")
            << QVariant(QStringList{"name", "kind"}) << true << QStringList{"name", "kind"};
        QTest::newRow("name shows even when the list lacks it")
            << QVariant(QStringList{"size"}) << true << QStringList{"name", "size"};
        QTest::newRow("a damaged value falls back to the defaults")
            << QVariant(42) << true << QStringList{"name", "modified", "kind", "size"};
        QTest::newRow("unknown keys are dropped")
            << QVariant(QStringList{"added", "kind"}) << true << QStringList{"name", "kind"};
    }
    void firstRead() {
        QFETCH(QVariant, stored);
        QFETCH(bool, introduced);
        QFETCH(QStringList, expected);
        {
            auto settings = raw();
            if (stored.isValid()) settings->setValue(Settings::visibleColumnsKey, stored);
            if (introduced) settings->setValue(Settings::dimensionsIntroducedKey, true);
        }
        auto settings = open();
        ColumnSettings columns(*settings);
        QCOMPARE(columns.visibleColumns(), expected);
        QVERIFY(raw()->value(Settings::dimensionsIntroducedKey).toBool());
    }

    void migrationRunsOnceAndHidingSticks() {
        {
            auto settings = open();
            ColumnSettings columns(*settings);
            QVERIFY(columns.isVisible("dimensions"));
            QVERIFY(columns.toggle("dimensions"));
            QVERIFY(!columns.isVisible("dimensions"));
        }
        for (int launch = 0; launch < 2; ++launch) {
            auto settings = open();
            ColumnSettings columns(*settings);
            QVERIFY(!columns.isVisible("dimensions"));
            QCOMPARE(raw()->value(Settings::visibleColumnsKey).toStringList(),
                     (QStringList{"name", "modified", "kind", "size"}));
        }
    }

    void toggleWritesInColumnOrder() {
        auto settings = open();
        ColumnSettings columns(*settings);
        QVERIFY(columns.toggle("created"));
        QVERIFY(columns.toggle("modified"));
        QVERIFY(columns.toggle("modified"));
        const QStringList expected{"name", "modified", "dimensions", "kind", "size", "created"};
        QCOMPARE(columns.visibleColumns(), expected);
        QCOMPARE(raw()->value(Settings::visibleColumnsKey).toStringList(), expected);
    }

    void refusesNameAndUnknownKeys() {
        auto settings = open();
        ColumnSettings columns(*settings);
        const QStringList before = raw()->value(Settings::visibleColumnsKey).toStringList();
        raw()->remove(Settings::visibleColumnsKey);
        QVERIFY(!columns.toggle("name"));
        QVERIFY(!columns.setVisible("name", false));
        QVERIFY(!columns.toggle("added"));
        QVERIFY(!columns.toggle(QString()));
        QVERIFY(columns.isVisible("name"));
        QCOMPARE(columns.visibleColumns(), before);
        QVERIFY(!raw()->contains(Settings::visibleColumnsKey)); // nothing was written
    }

    void headerStateSurvivesAFreshRead() {
        QByteArray state("\x00\xff\x10state\n@ByteArray(", 19);
        {
            auto settings = open();
            ColumnSettings columns(*settings);
            QVERIFY(columns.headerState().isEmpty());
            columns.saveHeaderState(state);
        }
        auto settings = open();
        QCOMPARE(ColumnSettings(*settings).headerState(), state);
    }
};

ORVANE_TEST_MAIN(ColumnSettingsTest)
#include "ColumnSettingsTest.moc"
