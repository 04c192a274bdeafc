#include "platform/VolumeWatch.h"

#include <QStorageInfo>

namespace orvane {

// /Volumes gains and loses its entries on mount and unmount; a cheap look every two seconds sees it.
VolumeWatch::VolumeWatch() {
    settle.setInterval(2000);
    auto roots = [] {
        QStringList list;
        for (const QStorageInfo& v : QStorageInfo::mountedVolumes())
            list << v.rootPath();
        return list;
    };
    connect(&settle, &QTimer::timeout, this, [this, roots, last = roots()]() mutable {
        const QStringList now = roots();
        if (now == last) return;
        last = now;
        emit changed();
    });
    settle.start();
}

VolumeWatch::~VolumeWatch() = default;

VolumeWatch& VolumeWatch::shared() {
    static VolumeWatch* watch = new VolumeWatch;
    return *watch;
}

} // namespace orvane
