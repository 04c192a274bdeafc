// NOTE TO THE PHONE DEVELOPER: before working, read /tmp/common-brief.md fully (binding house rules and repo
// layout); then delete this line.
#pragma once

#include <QString>
#include <QUrl>

namespace orvane {

// Names that the browsing core needs of phone addresses, without knowing their coding.
QString phoneFolderName(const QUrl& address);
QString phoneItemName(const QString& address);

} // namespace orvane
