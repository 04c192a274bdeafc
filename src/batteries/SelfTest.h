#pragma once

#include <QString>
#include <QTextStream>

namespace orvane {

class AppDelegate;

// The built-in battery behind --self-test: real checks in a fresh folder, one line per check.
class SelfTest {
public:
    SelfTest();
    // Runs every check; answers the process's exit status.
    int run();

    // Prints the check's line; a failure ends the battery.
    bool check(const QString& label, bool ok);
    QString folder() const { return root; }
    AppDelegate& app() { return *delegate; }

private:
    bool runBrowsingChecks();

    QString root;
    AppDelegate* delegate = nullptr;
    QTextStream out;
};

// The phone battery behind --phone-parity-test; answers the process's exit status.
int runPhoneParityTest();

} // namespace orvane
