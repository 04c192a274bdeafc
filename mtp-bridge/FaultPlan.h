#pragma once

#include <string>

namespace orvane {

// Misbehaviour on demand, read from the environment, so the client's failure paths can be exercised
// through the real process. Reply numbers count requests from 1 over the process's life.
struct FaultPlan {
    int delayMs = 0; // MTP_BRIDGE_DELAY_MS: wait this long before answering each request
    std::string
        hangOn; // MTP_BRIDGE_HANG_ON: never answer a request of this verb ("storages", "list", "get", ...)
    long exitAfter = 0;  // MTP_BRIDGE_EXIT_AFTER: exit right after the Nth reply
    long garble = 0;     // MTP_BRIDGE_GARBLE: the Nth reply is a line that isn't JSON
    long emptyReply = 0; // MTP_BRIDGE_EMPTY_REPLY: the Nth reply is an empty line
    long cutAfterProgress =
        0;                  // MTP_BRIDGE_CUT_AFTER_PROGRESS: the Nth request gets progress lines, then exit
    bool extraKeys = false; // MTP_BRIDGE_EXTRA_KEYS=1: every final reply carries keys no client knows
    bool nullProgress = false; // MTP_BRIDGE_NULL_PROGRESS=1: every final reply carries "progress": null
    bool echo = false; // MTP_BRIDGE_ECHO=1: "name" of every final reply is the request line as received
    // MTP_BRIDGE_STALL_MID_TRANSFER=1: a get or put stops moving after its first progress, as a hung
    // phone does, until the bridge is told to end
    bool stallMidTransfer = false;
    // MTP_BRIDGE_DIE_MID_TRANSFER=1: the bridge dies at once after a get's or put's first progress
    bool dieMidTransfer = false;
    long failReply = 0;       // MTP_BRIDGE_FAIL_REPLY: the Nth request is refused with an error reply
    bool repeatItems = false; // MTP_BRIDGE_REPEAT_ITEMS=1: every listing names each item twice

    static FaultPlan fromEnvironment();
};

} // namespace orvane
