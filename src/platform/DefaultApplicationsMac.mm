#include "platform/DefaultApplications.h"

#import <AppKit/AppKit.h>

namespace orvane {

QString DefaultApplications::nameFor(const QString& path, const QString& typeName) {
    Q_UNUSED(typeName);
    @autoreleasepool {
        NSURL* url = [NSURL fileURLWithPath:path.toNSString()];
        NSURL* app = [[NSWorkspace sharedWorkspace] URLForApplicationToOpenURL:url];
        if (!app) return {};
        return QString::fromNSString([[NSFileManager defaultManager] displayNameAtPath:app.path]);
    }
}

} // namespace orvane

namespace orvane {

// Not yet asked of NSWorkspace: the Mac build lists no applications and opens none by choice.
QList<DefaultApplications::Application> DefaultApplications::forType(const QString&) {
    return {};
}

DefaultApplications::Application DefaultApplications::defaultFor(const QString&) {
    return {};
}

QList<DefaultApplications::Application> DefaultApplications::all() {
    return {};
}

bool DefaultApplications::launch(const QString&, const QStringList&, QString& error) {
    error = QStringLiteral("Opening with a chosen application is not available here.");
    return false;
}

bool DefaultApplications::openTerminal(const QString&, QString& error) {
    error = QStringLiteral("No terminal is available here.");
    return false;
}

} // namespace orvane
