#pragma once

#include <QString>
#include <QUrl>

namespace orvane {

// Names that the browsing core needs of phone addresses, without knowing their coding.
QString phoneFolderName(const QUrl& address);
QString phoneItemName(const QString& address);

} // namespace orvane
