#include "phone/PhoneNames.h"

namespace orvane {

// Until phone addresses are decoded, every phone folder is the phone itself.
QString phoneFolderName(const QUrl&) {
    return QStringLiteral("Android USB");
}

QString phoneItemName(const QString&) {
    return QStringLiteral("Android USB");
}

} // namespace orvane
