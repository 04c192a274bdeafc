#include "core/Applications.h"

#include "platform/NativePath.h"

#include <QMimeDatabase>
#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

QMimeType Applications::typeOf(const QString& path) {
    const QMimeDatabase types;
    const QMimeType byName = types.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    if (!byName.isDefault()) return byName;
    QByteArray head(512, '\0');
    const int fd = ::open(NativePath::encode(path).constData(), O_RDONLY | O_CLOEXEC);
    const ssize_t n = fd < 0 ? 0 : ::read(fd, head.data(), size_t(head.size()));
    if (fd >= 0) ::close(fd);
    head.truncate(qMax<ssize_t>(n, 0));
    return types.mimeTypeForData(head);
}

Applications::Application Applications::defaultFor(const QString& path) const {
    return DefaultApplications::defaultFor(typeOf(path).name());
}

Applications::Choice Applications::choicesFor(const QStringList& paths) const {
    Choice choice;
    if (paths.isEmpty()) return choice;
    QList<Application> common;
    Application shared;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString type = typeOf(paths[i]).name();
        const QList<Application> apps = DefaultApplications::forType(type);
        if (i == 0)
            common = apps;
        else
            common.removeIf([&apps](const Application& a) { return !apps.contains(a); });
        const Application fallback = DefaultApplications::defaultFor(type);
        if (i == 0)
            shared = fallback;
        else if (!(shared == fallback))
            shared = {};
    }
    // One application named twice is listed once.
    QList<Application> unique;
    for (const Application& a : common)
        if (!unique.contains(a) && !(a == shared)) unique << a;
    std::sort(unique.begin(), unique.end(), [](const Application& a, const Application& b) {
        const int order = a.name.localeAwareCompare(b.name);
        return order != 0 ? order < 0 : a.path < b.path;
    });
    choice.hasDefault = !shared.id.isEmpty();
    if (choice.hasDefault) unique.prepend(shared);
    choice.applications = unique;
    return choice;
}

} // namespace orvane
