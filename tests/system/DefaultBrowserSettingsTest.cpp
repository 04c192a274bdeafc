#include "system/DefaultBrowserSettings.h"
#include "core/Settings.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace orvane;

namespace {
const QString files = QStringLiteral("files.desktop;");
const QString orvaneApp = QStringLiteral("org.orvaneApp.Orvane.desktop;");
const QString pane = QStringLiteral("org.orvaneApp.Orvane.desktop");
const QString denied = QStringLiteral("Permission denied [errno 13]");

// A desktop whose every answer the test decides: which call fails, which lies, which waits.
struct FakeDesktop {
    std::optional<QString> application = files;
    QVariant viewer;
    QStringList faults;
    int setCalls = 0;
    int viewerWrites = 0;
    QList<std::function<void()>> waiting;

    bool has(const char* fault) const { return faults.contains(QLatin1String(fault)); }
    DefaultBrowserSettings::Environment environment() {
        DefaultBrowserSettings::Environment env;
        env.readFolderApplication = [this] { return has("unknown") ? std::nullopt : application; };
        env.applicationIdentifier = [](const QString& app) -> std::optional<QString> {
            return app.section(u';', 0, 0).trimmed();
        };
        env.readFileViewer = [this] { return viewer; };
        env.writeFileViewer = [this](const QVariant& value) {
            ++viewerWrites;
            if (has("viewerFails") && value.isValid()) return false;
            viewer = has("viewerLies") && value.isValid() ? QVariant(QStringLiteral("someone")) : value;
            return true;
        };
        env.setFolderApplication = [this](const QString& app, auto done) {
            const int call = ++setCalls;
            auto run = [this, app, done, call] {
                const bool fails = (call == 1 && has("setFails")) || (call == 2 && has("recoveryFails"));
                if (!has("setIgnored") && (!fails || has("setMoves"))) application = app;
                done(fails ? std::optional<QString>(denied) : std::nullopt);
            };
            if (has("waits"))
                waiting << run;
            else
                run();
        };
        env.applicationExists = [this](const QString& app) {
            const QString id = app.section(u';', 0, 0).trimmed();
            return app.isEmpty() || id == QLatin1String("files.desktop") || (id == pane && !has("noOrvane"));
        };
        return env;
    }
};
} // namespace

class DefaultBrowserSettingsTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    std::unique_ptr<Settings> defaults;
    FakeDesktop desktop;
    std::unique_ptr<DefaultBrowserSettings> settings;

    DefaultBrowserSettings::Result run(std::function<void(DefaultBrowserSettings::Completion)> start) {
        std::optional<DefaultBrowserSettings::Result> result;
        start([&result](const DefaultBrowserSettings::Result& r) { result = r; });
        // The desktop answers through the event loop, as the real one does.
        for (int i = 0; i < 100 && !result; ++i)
            QCoreApplication::processEvents();
        return result.value_or(DefaultBrowserSettings::Result{{}, QStringLiteral("no answer")});
    }
    void makeSettings() {
        settings = std::make_unique<DefaultBrowserSettings>(desktop.environment(), *defaults, orvaneApp);
    }

private slots:
    void init() {
        defaults = std::make_unique<Settings>(dir.filePath(QStringLiteral("prefs.ini")));
        desktop = FakeDesktop();
        makeSettings();
    }
    void cleanup() {
        settings.reset();
        defaults.reset();
        QFile::remove(dir.filePath(QStringLiteral("prefs.ini")));
    }

    // Each step failing and each reading back wrong, and what the person is told.
    void outcomes_data() {
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("application");
        QTest::addColumn<int>("setCalls");
        QTest::addColumn<int>("viewerWrites");
        const QString restoredText = QStringLiteral(" Previous settings were restored.");
        const QString failedText =
            QStringLiteral(" Automatic recovery could not restore every setting. Open Default "
                           "folder browser and choose Restore previous file manager.");
        QTest::newRow("all goes well") << QStringList{} << "" << orvaneApp << 1 << 1;
        QTest::newRow("refused, nothing moved")
            << QStringList{"setFails"}
            << "The desktop did not change the folder browser: " + denied + " No settings were changed."
            << files << 1 << 0;
        QTest::newRow("refused after moving")
            << QStringList{"setFails", "setMoves"}
            << "The desktop could not finish changing the folder browser: " + denied + restoredText << files
            << 2 << 1;
        QTest::newRow("binding reads back wrong")
            << QStringList{"setIgnored"}
            << "The desktop did not confirm the requested folder browser." + restoredText << files << 1 << 1;
        QTest::newRow("service refuses")
            << QStringList{"viewerFails"} << "The Show in folder service could not be changed." + restoredText
            << files << 2 << 2;
        QTest::newRow("service reads back wrong")
            << QStringList{"viewerLies"}
            << "The new default-browser settings could not be verified." + restoredText << files << 2 << 2;
        QTest::newRow("recovery refused too")
            << QStringList{"viewerFails", "recoveryFails"}
            << "The Show in folder service could not be changed." + failedText + " Desktop: " + denied
            << orvaneApp << 2 << 2;
        QTest::newRow("present state unknown") << QStringList{"unknown"}
                                               << "The desktop did not report the current folder browser. No "
                                                  "settings were changed because automatic "
                                                  "recovery would be unavailable."
                                               << files << 0 << 0;
        QTest::newRow("Orvane not installed") << QStringList{"noOrvane"}
                                              << "The requested application could not be found or its "
                                                 "identity does not match. No settings were "
                                                 "changed."
                                              << files << 0 << 0;
    }
    void outcomes() {
        QFETCH(QStringList, faults);
        QFETCH(QString, error);
        QFETCH(QString, application);
        QFETCH(int, setCalls);
        QFETCH(int, viewerWrites);
        desktop.faults = faults;
        QSignalSpy changed(settings.get(), &DefaultBrowserSettings::didChange);
        const auto result = run([this](auto done) { settings->makeOrvaneDefault(done); });
        QCOMPARE(result.error, error);
        QCOMPARE(result.ok(), error.isEmpty());
        QCOMPARE(desktop.application, application);
        QCOMPARE(desktop.setCalls, setCalls);
        QCOMPARE(desktop.viewerWrites, viewerWrites);
        QCOMPARE(desktop.viewer.isValid(), error.isEmpty());
        QCOMPARE(changed.size(), setCalls > 0 ? 1 : 0);
        QVERIFY(!settings->isChanging());
    }

    // A state that already holds is a success that touches nothing and tells nobody.
    void anAchievedStateChangesNothing() {
        desktop.application = orvaneApp;
        desktop.viewer = pane;
        QSignalSpy changed(settings.get(), &DefaultBrowserSettings::didChange);
        const auto result = run([this](auto done) { settings->makeOrvaneDefault(done); });
        QVERIFY(result.ok() && result.status->isOrvaneDefault());
        QCOMPARE(desktop.setCalls + desktop.viewerWrites, 0);
        QCOMPARE(changed.size(), 0);
        QVERIFY(defaults->defaultBrowserSnapshot().isEmpty());
    }

    // While the desktop holds a change, a second one is refused at once and the first goes on.
    void aSecondChangeWaitsForNone() {
        desktop.faults = {"waits"};
        std::optional<DefaultBrowserSettings::Result> first;
        settings->makeOrvaneDefault([&first](const auto& r) { first = r; });
        QVERIFY(settings->isChanging());
        const auto second = run([this](auto done) { settings->restorePreviousDefault(done); });
        QVERIFY(second.error.startsWith("A default-browser change is already waiting"));
        QCOMPARE(desktop.waiting.size(), 1);
        desktop.waiting.takeFirst()();
        QTRY_VERIFY(first.has_value());
        QVERIFY(first->ok());
        QCOMPARE(desktop.application, orvaneApp);
    }

    // The first state is kept through any number of changes, and going back returns to it exactly.
    void theFirstStateIsKept() {
        desktop.application = QStringLiteral(" files.desktop;other.desktop; ");
        QVERIFY(run([this](auto done) { settings->makeOrvaneDefault(done); }).ok());
        QVERIFY(run([this](auto done) { settings->restorePreviousDefault(done); }).ok());
        QVERIFY(run([this](auto done) { settings->makeOrvaneDefault(done); }).ok());
        const QVariantMap kept = defaults->defaultBrowserSnapshot();
        QCOMPARE(kept.value("folderApplicationURL").toString(),
                 QStringLiteral(" files.desktop;other.desktop; "));
        QCOMPARE(kept.value("fileViewerWasPresent").toBool(), false);
        const auto back = run([this](auto done) { settings->restorePreviousDefault(done); });
        QVERIFY(back.ok() && back.status->isPreviousDefault());
        QCOMPARE(desktop.application, QStringLiteral(" files.desktop;other.desktop; "));
        QVERIFY(!desktop.viewer.isValid());
    }

    void preferencesCompare_data() {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<bool>("equal");
        QTest::newRow("both absent") << QVariant() << QVariant() << true;
        QTest::newRow("one absent") << QVariant() << QVariant(pane) << false;
        QTest::newRow("same text") << QVariant(pane) << QVariant(pane) << true;
        QTest::newRow("other kind") << QVariant(pane) << QVariant(QStringList{pane}) << false;
    }
    void preferencesCompare() {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QFETCH(bool, equal);
        QCOMPARE(DefaultBrowserSettings::equalPreferences(a, b), equal);
    }
};

QTEST_GUILESS_MAIN(DefaultBrowserSettingsTest)
#include "DefaultBrowserSettingsTest.moc"
