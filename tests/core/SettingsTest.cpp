#include "core/Settings.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <functional>

using namespace orvane;

using Setter = std::function<void(Settings&)>;
Q_DECLARE_METATYPE(Setter)

class SettingsTest : public QObject {
    Q_OBJECT

private slots:
    // Each setting keeps the key an earlier version wrote, and signals only a real change.
    void keptUnderItsOldKeyAndSignalledOnce_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<Setter>("set");
        QTest::addColumn<QByteArray>("signal");
        QTest::newRow("last folder") << "lastFolder" << QVariant("/tmp/x")
                                     << Setter([](Settings& s) { s.setLastFolder("/tmp/x"); })
                                     << QByteArray(SIGNAL(lastFolderChanged(QString)));
        QTest::newRow("group by type")
            << "sort.groupByType.v1" << QVariant(true) << Setter([](Settings& s) { s.setGroupByType(true); })
            << QByteArray(SIGNAL(groupByTypeChanged(bool)));
        QTest::newRow("sidebar width")
            << "sidebar.width.v2" << QVariant(312) << Setter([](Settings& s) { s.setSidebarWidth(312); })
            << QByteArray(SIGNAL(sidebarWidthChanged(int)));
        QTest::newRow("visible columns") << "details.visibleColumns.v1"
                                         << QVariant(QStringList{"name", "size"}) << Setter([](Settings& s) {
                                                s.setVisibleColumns({"name", "size"});
                                            })
                                         << QByteArray(SIGNAL(visibleColumnsChanged(QStringList)));
        QTest::newRow("pins") << "pinnedFolders.v1" << QVariant(QStringList{"/a"})
                              << Setter([](Settings& s) { s.setPins({"/a"}); })
                              << QByteArray(SIGNAL(pinsChanged()));
    }
    void keptUnderItsOldKeyAndSignalledOnce() {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        QFETCH(Setter, set);
        QFETCH(QByteArray, signal);
        QTemporaryDir dir;
        const QString file = dir.filePath("prefs.ini");
        {
            Settings settings(file);
            QSignalSpy changed(&settings, signal.constData());
            set(settings);
            QCOMPARE(changed.count(), 1);
        }
        QSettings raw(file, QSettings::IniFormat);
        QCOMPARE(raw.value(key), value);
    }

    void untouchedSettingsReadTheirDefaults() {
        QTemporaryDir dir;
        Settings settings(dir.filePath("prefs.ini"));
        QVERIFY(!settings.pins() && !settings.visibleColumns());
        QCOMPARE(settings.sidebarWidth(), 0);
        QVERIFY(!settings.groupByType());
        settings.setPins({});
        QCOMPARE(settings.pins(), std::optional<QStringList>(QStringList()));
    }
};

ORVANE_TEST_MAIN(SettingsTest)
#include "SettingsTest.moc"
