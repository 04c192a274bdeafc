#include "preview/PreviewCard.h"

namespace orvane {

PreviewCard PreviewCard::start() {
    return {QStringLiteral("doc.text"),
            QStringLiteral("Select a file to preview"),
            QStringLiteral("A preview of the selected file appears here."),
            {}};
}

PreviewCard PreviewCard::several(int count) {
    return {QStringLiteral("doc.on.doc"),
            QString::number(count) + QStringLiteral(" items selected"),
            QStringLiteral("Select a single file to see its preview."),
            {}};
}

PreviewCard PreviewCard::folder(const QIcon& icon) {
    return {QStringLiteral("folder"), QStringLiteral("Folder"),
            QStringLiteral("Select a file inside this folder to preview its contents."), icon};
}

PreviewCard PreviewCard::unavailable() {
    return {QStringLiteral("doc"),
            QStringLiteral("Preview unavailable"),
            QStringLiteral("This file could not be read. Check that it is available and you have access."),
            {}};
}

PreviewCard PreviewCard::summary(const QString& kind, const QIcon& icon) {
    return {QStringLiteral("doc"), kind.isEmpty() ? QStringLiteral("File") : kind,
            QStringLiteral("There is no preview for this kind of file."), icon};
}

} // namespace orvane
