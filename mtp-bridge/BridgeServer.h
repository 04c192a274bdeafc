#pragma once

#include "FaultPlan.h"
#include "PhoneBackend.h"

#include "ReplyLine.h"

#include <QByteArray>
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
    ReplyLine answer(const QStringList& args);
    ReplyLine transfer(const QStringList& args);
    ReplyLine edit(const QStringList& args);
    ReplyLine inspect(const QStringList& args);
    void decorate(ReplyLine& reply, const QByteArray& line) const;
    bool writeLine(std::string line);
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
