#pragma once

#include <QByteArray>
#include <QProcess>

namespace orvane::test {

// A session bus of the test's own, so no program of the desktop answers and nothing is left behind.
// Start it before anything touches the session bus; the process's children inherit it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    bool running() const { return !address.isEmpty(); }
    QByteArray address;

private:
    QProcess daemon;
};

} // namespace orvane::test
