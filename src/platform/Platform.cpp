#include "platform/Platform.h"

#include "platform/TypeIndex.h"

namespace orvane {

QString Platform::typeDescription(const QString& fileName, bool directory, bool package) {
    static const QString folder = QStringLiteral("File folder");
    static const QString file = QStringLiteral("File");
    if (directory && !package) return folder;
    const QString text = TypeIndex::shared().describe(fileName);
    return text.isEmpty() ? file : text;
}

} // namespace orvane
