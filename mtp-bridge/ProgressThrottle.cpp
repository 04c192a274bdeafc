#include "ProgressThrottle.h"

#include <algorithm>

namespace orvane {

ProgressThrottle::ProgressThrottle(Sink sink, std::chrono::milliseconds interval)
    : sink(std::move(sink)), interval(interval), last(std::chrono::steady_clock::now()) {}

void ProgressThrottle::report(uint64_t done, uint64_t total) {
    if (total == 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last < interval) return;
    last = now;
    sink(std::min(1.0, double(done) / double(total)));
}

void ProgressThrottle::finish() {
    sink(1.0);
}

} // namespace orvane
