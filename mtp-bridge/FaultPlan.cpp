#include "FaultPlan.h"

#include <cstdlib>
#include <cstring>

namespace orvane {

namespace {
long number(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::strtol(value, nullptr, 10) : 0;
}

bool flag(const char* name) {
    const char* value = std::getenv(name);
    return value && *value && std::strcmp(value, "0") != 0;
}
} // namespace

FaultPlan FaultPlan::fromEnvironment() {
    FaultPlan plan;
    plan.delayMs = int(number("MTP_BRIDGE_DELAY_MS"));
    if (const char* verb = std::getenv("MTP_BRIDGE_HANG_ON")) plan.hangOn = verb;
    plan.exitAfter = number("MTP_BRIDGE_EXIT_AFTER");
    plan.garble = number("MTP_BRIDGE_GARBLE");
    plan.emptyReply = number("MTP_BRIDGE_EMPTY_REPLY");
    plan.cutAfterProgress = number("MTP_BRIDGE_CUT_AFTER_PROGRESS");
    plan.extraKeys = flag("MTP_BRIDGE_EXTRA_KEYS");
    plan.nullProgress = flag("MTP_BRIDGE_NULL_PROGRESS");
    plan.echo = flag("MTP_BRIDGE_ECHO");
    plan.stallMidTransfer = flag("MTP_BRIDGE_STALL_MID_TRANSFER");
    plan.dieMidTransfer = flag("MTP_BRIDGE_DIE_MID_TRANSFER");
    plan.failReply = number("MTP_BRIDGE_FAIL_REPLY");
    plan.repeatItems = flag("MTP_BRIDGE_REPEAT_ITEMS");
    return plan;
}

} // namespace orvane
