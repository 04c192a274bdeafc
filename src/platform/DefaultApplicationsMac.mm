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
