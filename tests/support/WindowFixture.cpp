#include "support/WindowFixture.h"

#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QTest>
#include <QUrl>

namespace orvane::test {

WindowFixture::WindowFixture() = default;

WindowFixture::~WindowFixture() {
    stopProgram();
}

void WindowFixture::startProgram() {
    tree = std::make_unique<TempTree>();
    app = std::make_unique<AppDelegate>();
}

Explorer* WindowFixture::openWindow(const QString& folder, bool shown) {
    const QString path = folder.isEmpty() ? tree->path() : folder;
    w = app->newWindow(QUrl::fromLocalFile(path));
    if (shown) {
        w->show();
        if (!QTest::qWaitForWindowExposed(w)) qWarning("The window was not shown");
    }
    // A folder with nothing shown (hidden items are not, at first) has nothing to wait for.
    const QDir::Filters shownItems = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System;
    if (!QDir(path).isEmpty(shownItems) && !QTest::qWaitFor([this] { return !w->entries().empty(); }))
        qWarning("%s was not listed in time", qPrintable(path));
    return w;
}

void WindowFixture::stopProgram() {
    w = nullptr;
    app.reset();
    tree.reset();
}

} // namespace orvane::test
