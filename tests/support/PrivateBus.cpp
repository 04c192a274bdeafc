#include "support/PrivateBus.h"

namespace orvane::test {

PrivateBus::PrivateBus() {
    daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                 QStringLiteral("--print-address")});
    if (!daemon.waitForStarted()) return;
    while (!daemon.canReadLine() && daemon.waitForReadyRead(10000)) {
    }
    address = daemon.readLine().trimmed();
    if (!address.isEmpty()) qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}

PrivateBus::~PrivateBus() {
    daemon.kill();
    daemon.waitForFinished();
}

} // namespace orvane::test
