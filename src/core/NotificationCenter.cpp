#include "core/NotificationCenter.h"

namespace orvane {

NotificationCenter& NotificationCenter::shared() {
    static NotificationCenter center;
    return center;
}

} // namespace orvane
