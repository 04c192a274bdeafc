#include "core/FileDropPlan.h"

#include "platform/NativePath.h"

#include <QDir>

namespace orvane {

namespace {
QString identityOf(const QList<QUrl>& identities, qsizetype i, const QUrl& url) {
    const QUrl& chosen = i < identities.size() && !identities[i].isEmpty() ? identities[i] : url;
    return QDir::cleanPath(chosen.toLocalFile());
}

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}

// Why this item cannot go into `target` by `operation`, or nothing when it can.
QString refusalFor(const QString& item, const QString& target, Qt::DropAction operation) {
    if (item == target) return QStringLiteral("A folder cannot go into itself");
    const QString prefix = item == QLatin1String("/") ? item : item + u'/';
    if (target.startsWith(prefix)) return QStringLiteral("A folder cannot go into its own subfolder");
    if (operation == Qt::MoveAction && parentOf(item) == target)
        return QStringLiteral("Already in this folder");
    return {};
}
} // namespace

Qt::DropAction FileDropPlan::operationFor(Qt::KeyboardModifiers keys, DropSource source) {
    const bool ctrl = keys & Qt::ControlModifier, shift = keys & Qt::ShiftModifier;
    if ((keys & Qt::AltModifier) || (ctrl && shift)) return Qt::LinkAction;
    if (ctrl) return Qt::CopyAction;
    if (shift) return Qt::MoveAction;
    return source == DropSource::SameFileSystem ? Qt::MoveAction : Qt::CopyAction;
}

std::optional<FileDropPlan> FileDropPlan::make(const Drag& drag, QString* refusal) {
    QString why;
    const auto refuse = [&](const QString& text) -> std::optional<FileDropPlan> {
        if (refusal) *refusal = text;
        return std::nullopt;
    };
    if (drag.busy) return refuse(QStringLiteral("The window is busy"));
    if (drag.urls.isEmpty()) return refuse(QStringLiteral("Only files can be dropped here"));
    if (drag.ontoFile || !drag.folder.isLocalFile()) return refuse({});
    const Qt::DropAction operation = operationFor(drag.keys, drag.source);
    // The phone road only copies.
    if (!(drag.offered & operation) || (drag.source == DropSource::Phone && operation != Qt::CopyAction))
        return refuse(QStringLiteral("These items cannot be dropped that way"));
    const QString target = identityOf({drag.folderIdentity}, 0, drag.folder);
    for (qsizetype i = 0; i < drag.urls.size(); ++i) {
        why = refusalFor(identityOf(drag.identities, i, drag.urls[i]), target, operation);
        if (!why.isEmpty()) return refuse(why);
    }
    if (refusal) refusal->clear();
    return FileDropPlan{drag.urls, drag.folder, drag.row, operation};
}

QString FileDropPlan::describe() const {
    const QString path = QDir::cleanPath(folder.toLocalFile());
    const qsizetype slash = path.lastIndexOf(u'/');
    const QString name = NativePath::display(path == QLatin1String("/") ? path : path.mid(slash + 1));
    switch (operation) {
    case Qt::MoveAction:
        return QStringLiteral("Move to ") + name;
    case Qt::LinkAction:
        return QStringLiteral("Create shortcuts in ") + name;
    default:
        return QStringLiteral("Copy to ") + name;
    }
}

QVariant FileDropPlan::toVariant() const {
    QVariantList list;
    for (const QUrl& url : urls)
        list << url;
    return QVariantMap{{QStringLiteral("urls"), list},
                       {QStringLiteral("folder"), folder},
                       {QStringLiteral("operation"), int(operation)}};
}

std::optional<FileDropPlan> FileDropPlan::fromVariant(const QVariant& value) {
    const QVariantMap map = value.toMap();
    FileDropPlan plan;
    for (const QVariant& url : map.value(QStringLiteral("urls")).toList())
        if (url.toUrl().isLocalFile()) plan.urls << url.toUrl();
    plan.folder = map.value(QStringLiteral("folder")).toUrl();
    plan.operation = Qt::DropAction(map.value(QStringLiteral("operation")).toInt());
    const bool known = plan.operation == Qt::CopyAction || plan.operation == Qt::MoveAction ||
                       plan.operation == Qt::LinkAction;
    if (!known || plan.urls.isEmpty() || !plan.folder.isLocalFile()) return std::nullopt;
    return plan;
}

} // namespace orvane
