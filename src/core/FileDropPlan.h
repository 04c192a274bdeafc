#pragma once

#include <QList>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <optional>

namespace orvane {

// Where dragged files come from, as far as the operation without keys goes.
enum class DropSource { SameFileSystem, OtherFileSystem, Phone, OtherProgram };

// What one drop of files would do. The drag's validation and the drop itself both ask `make`, so
// what the cursor promises is what happens.
struct FileDropPlan {
    QList<QUrl> urls;
    QUrl folder;
    // The folder's row or item in the file list; none when the drop goes to the folder shown.
    std::optional<int> row;
    Qt::DropAction operation = Qt::CopyAction; // exactly one of copy, move, link

    // All a drag over one place tells.
    struct Drag {
        QList<QUrl> urls;
        // The items and the target with links resolved; empty takes the cleaned paths.
        QList<QUrl> identities;
        QUrl folder;
        QUrl folderIdentity;
        std::optional<int> row;
        bool ontoFile = false; // the row holds a file or a package
        bool busy = false;
        DropSource source = DropSource::OtherProgram;
        Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        Qt::KeyboardModifiers keys;
    };

    // No plan is a refused drag; `refusal`, when given, says why where a person would ask.
    static std::optional<FileDropPlan> make(const Drag& drag, QString* refusal = nullptr);
    static Qt::DropAction operationFor(Qt::KeyboardModifiers keys, DropSource source);
    // The status line while the drag hovers: "Move to Documents".
    QString describe() const;
    // As the "dropFiles" command carries it, so a part that sees no file operations can ask for one.
    QVariant toVariant() const;
    static std::optional<FileDropPlan> fromVariant(const QVariant& value);
};

} // namespace orvane
