#include "BridgeServer.h"
#include "SimulatedPhone.h"
#ifdef ORVANE_BRIDGE_LIBMTP
#include "LibmtpPhone.h"
#endif

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace orvane;

namespace {
#ifndef ORVANE_BRIDGE_LIBMTP
// A build without libmtp still answers every request, each with the same plain refusal.
class NoPhone : public PhoneBackend {
    static std::string refuse() { return "This build has no USB phone support."; }

public:
    std::string storages(std::vector<PhoneObject>&) override { return refuse(); }
    std::string list(uint32_t, uint32_t, std::vector<PhoneObject>&) override { return refuse(); }
    std::string scan() override { return refuse(); }
    std::string get(uint32_t, int, const std::string&, const TransferProgress&) override { return refuse(); }
    std::string put(uint32_t, uint32_t, const std::string&, const TransferProgress&) override {
        return refuse();
    }
    std::string makeFolder(uint32_t, uint32_t, const std::string&, uint32_t&) override { return refuse(); }
    std::string remove(uint32_t) override { return refuse(); }
    std::string rename(uint32_t, const std::string&) override { return refuse(); }
    std::string move(uint32_t, uint32_t, uint32_t) override { return refuse(); }
    std::string info(uint32_t, PhoneObjectInfo&) override { return refuse(); }
    std::string thumbnail(uint32_t, const std::string&) override { return refuse(); }
};
#endif

std::unique_ptr<PhoneBackend> makePhone(FaultPlan& faults) {
    const char* simulated = std::getenv("MTP_BRIDGE_SIMULATE");
    if (simulated && *simulated) {
        faults = FaultPlan::fromEnvironment();
        return std::make_unique<SimulatedPhone>(simulated);
    }
#ifdef ORVANE_BRIDGE_LIBMTP
    return std::make_unique<LibmtpPhone>();
#else
    return std::make_unique<NoPhone>();
#endif
}
} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || std::strcmp(argv[1], "--serve") != 0) {
        std::fprintf(
            stderr, "usage: mtp-bridge --serve\n"
                    "  Answers phone requests, one JSON array of strings per line on standard input.\n"
                    "  MTP_BRIDGE_SIMULATE=DIR serves a simulated phone whose storages are DIR's folders.\n");
        return 2;
    }
    // A client gone away shows as a failed write, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
    // The client ends a stalled transfer with SIGTERM: the transfer cleans up, then the bridge ends.
    // No SA_RESTART, so a read waiting for the next request is interrupted too.
    struct sigaction stop {};
    stop.sa_handler = [](int) { BridgeServer::requestStop(); };
    sigemptyset(&stop.sa_mask);
    sigaction(SIGTERM, &stop, nullptr);
    // Libraries may print to standard output; only the protocol may reach the client's pipe.
    const int protocol = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (protocol < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        std::perror("mtp-bridge");
        return 1;
    }
    FaultPlan faults;
    std::unique_ptr<PhoneBackend> phone = makePhone(faults);
    return BridgeServer(*phone, faults, STDIN_FILENO, protocol).serve();
}
