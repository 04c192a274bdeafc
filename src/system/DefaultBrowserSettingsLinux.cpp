#include "system/DefaultBrowserSettings.h"

#include "platform/NativePath.h"
#include "system/FileManagerBus.h"
#include "system/MimeAppsList.h"

#include <QDir>
#include <QFile>
#include <QTimer>

namespace orvane {

namespace {
const QByteArray folderType = "inode/directory";

// The desktop file IDs of a stored line, in order: "inode/directory=a.desktop;b.desktop;" names two.
QStringList idsOf(const QString& application) {
    QStringList ids;
    const QString value = application.contains(u'=') ? application.section(u'=', 1) : application;
    for (const QString& id : value.split(u';'))
        if (!id.trimmed().isEmpty()) ids << id.trimmed();
    return ids;
}

// Where the desktop looks for desktop files, by the variables themselves.
QString desktopFile(const QString& id) {
    const QByteArray home = qgetenv("XDG_DATA_HOME");
    QStringList folders{home.startsWith('/') ? NativePath::decode(home)
                                             : QDir::homePath() + QStringLiteral("/.local/share")};
    const QByteArray dirs = qgetenv("XDG_DATA_DIRS");
    folders += dirs.isEmpty() ? QStringList{QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")}
                              : NativePath::decode(dirs).split(u':', Qt::SkipEmptyParts);
    for (const QString& folder : folders)
        if (const QString path = folder + QStringLiteral("/applications/") + id; NativePath::exists(path))
            return path;
    return {};
}
} // namespace

DefaultBrowserSettings::Environment DefaultBrowserSettings::desktop(FileManagerBus& bus) {
    Environment env;
    env.readFolderApplication = []() -> std::optional<QString> {
        const auto value = MimeAppsList::readLine(MimeAppsList::userFile(), folderType);
        if (!value) return std::nullopt;
        return NativePath::decode(*value);
    };
    env.applicationIdentifier = [](const QString& application) -> std::optional<QString> {
        return idsOf(application).join(u';');
    };
    env.readFileViewer = [&bus, pane = idsOf(QStringLiteral("org.orvane.Orvane.desktop")).join(u';')] {
        return bus.claimed() ? QVariant(pane) : QVariant();
    };
    env.writeFileViewer = [&bus](const QVariant& value) {
        return value.isValid() ? bus.takeName() : bus.handBackName();
    };
    // Answered from the event loop, as a desktop that asks the person would.
    env.setFolderApplication = [](const QString& application,
                                  std::function<void(std::optional<QString>)> done) {
        const QString error =
            MimeAppsList::writeLine(MimeAppsList::userFile(), folderType, NativePath::encode(application));
        QTimer::singleShot(
            0, [done, error] { done(error.isEmpty() ? std::nullopt : std::optional<QString>(error)); });
    };
    env.applicationExists = [](const QString& application) {
        const QStringList ids = idsOf(application);
        return ids.isEmpty() || !desktopFile(ids.first()).isEmpty();
    };
    return env;
}

QString DefaultBrowserSettings::applicationName(const QString& application) {
    const QStringList ids = idsOf(application);
    if (ids.isEmpty()) return QStringLiteral("The desktop's choice");
    QFile file(desktopFile(ids.first()));
    if (file.open(QIODevice::ReadOnly)) {
        bool entry = false;
        while (!file.atEnd()) {
            const QByteArray line = file.readLine().trimmed();
            if (line.startsWith('[')) entry = line == "[Desktop Entry]";
            if (entry && line.startsWith("Name=")) return QString::fromUtf8(line.mid(5));
        }
    }
    QString name = ids.first();
    return name.endsWith(QLatin1String(".desktop")) ? name.chopped(8) : name;
}

} // namespace orvane
