#pragma once

#include "FaultPlan.h"
#include "PhoneBackend.h"
#include "ProgressThrottle.h"

#include "ReplyLine.h"

#include <QByteArray>
#include <QStringList>
#include <csignal>

namespace orvane {

// The line protocol: one JSON array of strings per line in, progress lines and then one final JSON
// object per line out. Nothing but protocol lines is ever written to `output`.
class BridgeServer {
public:
    BridgeServer(PhoneBackend& phone, FaultPlan faults, int input, int output);
    // Serves until end of input, a write failure or a request to stop; answers the exit status.
    int serve();
    // Safe in a signal handler: a transfer under way stops and cleans up after itself, then the server
    // ends. The client ends a bridge this way when a transfer stalls.
    static void requestStop() { stopRequested = 1; }
    // A request line is a few names and paths; a longer one is refused without being kept.
    static constexpr qsizetype maxRequestLine = qsizetype(1) << 20;

private:
    bool handleLine(const QByteArray& line);
    ReplyLine answer(const QStringList& args);
    ReplyLine transfer(const QStringList& args);
    std::string getOne(const QString& handle, const QString& path);
    std::string putOne(uint32_t storage, uint32_t parent, const QString& path);
    TransferProgress progressTo(ProgressThrottle& throttle);
    ReplyLine edit(const QStringList& args);
    ReplyLine inspect(const QStringList& args);
    void decorate(ReplyLine& reply, const QByteArray& line) const;
    bool writeLine(std::string line);
    void writeProgress(double fraction);
    [[noreturn]] static void hang();
    bool transferGoesOn();

    static inline volatile sig_atomic_t stopRequested = 0;

    PhoneBackend& phone;
    FaultPlan faults;
    int input;
    int output;
    long served = 0;
    bool broken = false;
};

} // namespace orvane
