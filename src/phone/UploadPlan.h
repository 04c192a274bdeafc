#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

namespace orvane {

// One local item to send, read before anything moves.
struct UploadNode {
    QByteArray path; // the exact bytes of the local path
    QString name;    // what it will be called on the phone
    bool folder = false;
    QList<UploadNode> children; // a folder's entries, hidden ones too, in the file system's order
};

// The whole local side of an upload, walked and checked before the first request, so a link, a
// device or an unreadable folder deep inside is refused while both sides are still untouched.
struct UploadPlan {
    QList<UploadNode> roots;
    std::optional<QString> error; // the first refusal, in the words the user sees

    static UploadPlan read(const QList<QByteArray>& paths);
};

// The text form of local bytes, or absent when the bytes aren't UTF-8 and text would lose them.
std::optional<QString> exactText(const QByteArray& bytes);

} // namespace orvane
