#pragma once

#include <QString>

namespace orvane {

// Whether a folder can be listed, asked of the system by its exact bytes.
namespace FolderAccess {

// The system's error number for opening the folder to read its names, or 0 when it opens.
int readFailure(const QString& folder);
// A refusal for want of permission, as opposed to a folder that is gone, broken or unreachable.
bool isPermissionError(int code);

} // namespace FolderAccess

} // namespace orvane
