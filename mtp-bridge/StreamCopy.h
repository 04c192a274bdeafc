#pragma once

#include "PhoneBackend.h"

namespace orvane {

// Copies `total` bytes from one open file to another, reporting as it goes. Answers an empty text
// on success or the reason it stopped.
std::string copyStream(int from, int to, uint64_t total, const TransferProgress& progress);

} // namespace orvane
