#pragma once

#include <QApplication>
#include <QStandardPaths>
#include <QTest>

namespace orvane::test {

// Gives the test process a home, configuration, data, cache and runtime folder of its own under a
// fresh temporary folder, so preferences, Trash and caches start empty and never touch the user's.
// Call before the application object exists.
void prepareEnvironment();

} // namespace orvane::test

#define ORVANE_TEST_MAIN(TestObject)                                                                         \
    int main(int argc, char** argv) {                                                                        \
        orvane::test::prepareEnvironment();                                                                  \
        QApplication app(argc, argv);                                                                        \
        app.setOrganizationName(QStringLiteral("Orvane"));                                                   \
        app.setApplicationName(QStringLiteral("Orvane"));                                                    \
        QStandardPaths::setTestModeEnabled(true);                                                            \
        TestObject tc;                                                                                       \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&tc, argc, argv);                                                                \
    }
