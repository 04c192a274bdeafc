#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace orvane {

// Turns the many per-buffer callbacks of a transfer into a few progress lines: at most one per
// interval, and always a last 1 when the transfer succeeded, so every transfer shows some progress.
class ProgressThrottle {
public:
    using Sink = std::function<void(double fraction)>;

    explicit ProgressThrottle(Sink sink, std::chrono::milliseconds interval = std::chrono::milliseconds(100));
    void report(uint64_t done, uint64_t total);
    void finish();

private:
    Sink sink;
    std::chrono::milliseconds interval;
    std::chrono::steady_clock::time_point last;
};

} // namespace orvane
