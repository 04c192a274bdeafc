#pragma once

#include "support/TempTree.h"

#include <QString>
#include <memory>

namespace orvane {
class AppDelegate;
class Explorer;
} // namespace orvane

namespace orvane::test {

// The program with a window over a temporary folder, made afresh for each test. A test object
// derives from it: `startProgram` in init, fill `tree`, `openWindow`; `stopProgram` in cleanup.
class WindowFixture {
protected:
    WindowFixture();
    ~WindowFixture();

    void startProgram();
    // On `folder` (the tree by default), waiting until what is there is listed; `shown` puts it on
    // the screen and waits for that too.
    Explorer* openWindow(const QString& folder = {}, bool shown = false);
    // The program goes before its folder.
    void stopProgram();

    std::unique_ptr<TempTree> tree;
    std::unique_ptr<AppDelegate> app;
    Explorer* w = nullptr;
};

} // namespace orvane::test
