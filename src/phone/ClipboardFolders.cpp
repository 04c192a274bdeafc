#include "phone/ClipboardFolders.h"

#include "fileops/FileClipboard.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QThreadPool>
#include <QUuid>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
const QString prefix = QStringLiteral("Belcove-Clipboard-");

void removeLater(const QString& folder) {
    QThreadPool::globalInstance()->start([folder] {
        QString ignored;
        FileTree::remove(folder, ignored);
    });
}

// The clipboard of a process that has ended is gone with it, and so is any need for its folders.
void removeOrphans() {
    const QDir temp = QDir::temp();
    for (const QString& name : temp.entryList({prefix + u'*'}, QDir::Dirs | QDir::Hidden)) {
        bool number = false;
        const pid_t owner = pid_t(name.mid(prefix.size()).section(u'-', 0, 0).toInt(&number));
        struct stat st;
        const QString path = temp.filePath(name);
        if (number && owner > 0 && ::kill(owner, 0) != 0 && errno == ESRCH &&
            ::lstat(NativePath::encode(path).constData(), &st) == 0 && S_ISDIR(st.st_mode) &&
            st.st_uid == ::geteuid())
            removeLater(path);
    }
}
} // namespace

ClipboardFolders& ClipboardFolders::shared() {
    static ClipboardFolders* folders = new ClipboardFolders;
    return *folders;
}

ClipboardFolders::ClipboardFolders() : QObject(QCoreApplication::instance()) {
    removeOrphans();
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            &ClipboardFolders::clipboardChanged);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        for (const QString& folder : std::exchange(held, {})) {
            QString ignored;
            FileTree::remove(folder, ignored);
        }
    });
}

QString ClipboardFolders::make(QString& error) {
    const QString folder =
        QDir::temp().filePath(prefix + QString::number(QCoreApplication::applicationPid()) + u'-' +
                              QUuid::createUuid().toString(QUuid::WithoutBraces));
    if (::mkdir(NativePath::encode(folder).constData(), 0700) == 0) return folder;
    error = QString::fromLocal8Bit(std::strerror(errno));
    return {};
}

void ClipboardFolders::hold(const QString& folder) {
    held << folder;
}

void ClipboardFolders::discard(const QString& folder) {
    held.removeAll(folder);
    removeLater(folder);
}

void ClipboardFolders::clipboardChanged() {
    const QList<QUrl> urls = FileClipboard::shared().fileUrls();
    for (const QString& folder : QStringList(held)) {
        const bool kept = std::any_of(urls.begin(), urls.end(), [&](const QUrl& url) {
            return url.isLocalFile() && url.toLocalFile().startsWith(folder + u'/');
        });
        if (!kept) discard(folder);
    }
}

} // namespace orvane
