#pragma once

namespace orvane {

class SelfTest;

// The file operation checks of the --self-test battery, run in the battery's folder. False at the first
// failed check, which the battery has already printed.
bool runFileOpsChecks(SelfTest& test);

} // namespace orvane
