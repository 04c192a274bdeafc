#pragma once

#include <QString>
#include <vector>

namespace orvane {

// One item of a transfer: where it is and the free place it goes to.
struct TransferJob {
    QString source;
    QString destination;
    bool operator==(const TransferJob&) const = default;
};

using TransferJobs = std::vector<TransferJob>;

} // namespace orvane
