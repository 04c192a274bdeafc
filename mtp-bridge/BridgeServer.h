#pragma once

#include "FaultPlan.h"
#include "PhoneBackend.h"

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

namespace orvane {

// The line protocol: one JSON array of strings per line in, progress lines and then one final JSON
// object per line out. Nothing but protocol lines is ever written to `output`.
class BridgeServer {
public:
    BridgeServer(PhoneBackend& phone, FaultPlan faults, int input, int output);
    // Serves until end of input or a write failure; answers the exit status.
    int serve();

private:
    bool handleLine(const QByteArray& line);
    QJsonObject answer(const QStringList& args);
    QJsonObject transfer(const QStringList& args);
    QJsonObject edit(const QStringList& args);
    QJsonObject inspect(const QStringList& args);
    void decorate(QJsonObject& reply, const QByteArray& line) const;
    bool writeLine(const QByteArray& line);
    void writeProgress(double fraction);
    [[noreturn]] static void hang();

    PhoneBackend& phone;
    FaultPlan faults;
    int input;
    int output;
    long served = 0;
    bool broken = false;
};

} // namespace orvane
