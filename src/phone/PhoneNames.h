#pragma once

#include <QString>
#include <QUrl>

namespace orvane {

// Names that the browsing core needs of phone addresses, without knowing their coding.
QString phoneFolderName(const QUrl& address);
QString phoneItemName(const QString& address);
// Teaches the shared entries to name phone items and folders; once is enough.
void registerPhoneNames();

} // namespace orvane
