#include "platform/VolumeWatch.h"

#include <QSocketNotifier>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

// The kernel flags the mount table as exceptional whenever it changes, so the watch costs
// nothing until something is mounted; file-system watchers never fire on /proc.
VolumeWatch::VolumeWatch() {
    settle.setSingleShot(true);
    settle.setInterval(150);
    connect(&settle, &QTimer::timeout, this, &VolumeWatch::changed);
    handle = open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (handle < 0) return;
    auto* notifier = new QSocketNotifier(handle, QSocketNotifier::Exception, this);
    connect(notifier, &QSocketNotifier::activated, this, &VolumeWatch::noticed);
}

VolumeWatch::~VolumeWatch() {
    if (handle >= 0) close(handle);
}

VolumeWatch& VolumeWatch::shared() {
    static VolumeWatch* watch = new VolumeWatch; // lives as long as the process, past the last window
    return *watch;
}

} // namespace orvane
