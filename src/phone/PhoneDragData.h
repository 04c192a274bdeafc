#pragma once

#include "phone/PhoneItem.h"

#include <QMimeData>
#include <QUrl>
#include <optional>

namespace orvane {

// Phone items being dragged. A window of this program reads their JSON (a local folder copies them,
// a phone folder moves them); any other program asks for file URLs, and only then are the items
// downloaded, once, into a fresh temporary folder: the promise of a file that exists on demand.
class PhoneDragData : public QMimeData {
    Q_OBJECT
public:
    explicit PhoneDragData(const QList<PhoneItem>& items);

    QStringList formats() const override;
    bool hasFormat(const QString& mimeType) const override;
    // Why the download failed, after a failed one.
    QString error() const { return failure; }

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

private:
    const QList<QUrl>& deliver() const;

    QList<PhoneItem> items;
    mutable std::optional<QList<QUrl>> delivered;
    mutable QString failure;
};

} // namespace orvane
