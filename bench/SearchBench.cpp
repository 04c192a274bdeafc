#include "BenchCommand.h"

#include "search/FolderWalk.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;

namespace {

const char* const stems[] = {"report", "IMG_", "Notes ", "track", "data-", "Résumé ", "file", "Photo"};
const char* const suffixes[] = {".txt", ".jpg", ".pdf", ".mp3", ".tar.gz", "", ".md", ".cpp"};

bool touch(const QByteArray& path) {
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    return fd >= 0 && ::close(fd) == 0;
}

// Ten files a folder, folders ten to a parent, breadth first; every thousandth folder is hidden and
// every thousandth file too, so the hidden rule has something to drop.
int makeTree(const QStringList& args) {
    if (args.size() != 2) return 2;
    const int files = args[1].toInt();
    const int folderCount = std::max(1, files / 10);
    QList<QByteArray> folders{QFile::encodeName(args[0])};
    if (::mkdir(folders[0].constData(), 0755) != 0 && errno != EEXIST) return 1;
    for (int i = 1; i <= folderCount; ++i) {
        const QByteArray name = (i % 1000 == 0 ? ".cache " : "folder ") + QByteArray::number(i);
        folders << folders[(i - 1) / 10] + '/' + name;
        if (::mkdir(folders.last().constData(), 0755) != 0) return 1;
    }
    for (int i = 0; i < files; ++i) {
        const QByteArray stem = i % 1000 == 999 ? QByteArray(".hidden ") : QByteArray(stems[i % 8]);
        const QByteArray name = stem + QByteArray::number(i) + suffixes[(i / 8) % 8];
        if (!touch(folders[1 + i % folderCount] + '/' + name)) return 1;
    }
    benchOut() << "files " << files << "\nfolders " << folderCount << Qt::endl;
    return 0;
}

struct Timed {
    QSet<QString> paths;
    double ms = 0;
    double firstMs = -1;
};

Timed walk(const QString& dir, const QString& text) {
    std::atomic<quint64> generation{1};
    FolderWalk walker(dir, text, false);
    Timed timed;
    QElapsedTimer timer;
    walker.setBatch(
        [&](std::vector<Entry>&& found, FolderWalk::Progress) {
            if (timed.firstMs < 0 && !found.empty()) timed.firstMs = double(timer.nsecsElapsed()) / 1e6;
        },
        std::chrono::milliseconds(250));
    timer.start();
    walker.run(generation, 1);
    timed.ms = double(timer.nsecsElapsed()) / 1e6;
    for (const Entry& e : walker.results())
        timed.paths.insert(e.location);
    return timed;
}

// find's answer with hidden paths pruned, as the walk does by default.
QString findCommand(const QString& dir, const QString& text) {
    return QStringLiteral("find '%1' -mindepth 1 -name '.*' -prune -o -iname '*%2*' -print").arg(dir, text);
}

QSet<QString> findPaths(const QString& dir, const QString& text) {
    QProcess process;
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), findCommand(dir, text)});
    process.waitForFinished(-1);
    QSet<QString> paths;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n'))
        if (!line.isEmpty()) paths.insert(QFile::decodeName(line));
    return paths;
}

int search(const QStringList& args) {
    if (args.size() != 2) return 2;
    const QString dir = args[0];
    const QString text = args[1];
    walk(dir, text); // both sides run on a warm cache
    const double findMs = timeShell(findCommand(dir, text));
    const Timed timed = walk(dir, text);
    const QSet<QString> expected = findPaths(dir, text);
    benchOut() << "results " << timed.paths.size() << "\nsearch ms " << timed.ms << "\nfirst result ms "
               << timed.firstMs << "\nfind ms " << findMs << "\nfind results " << expected.size()
               << "\nsame results " << (expected == timed.paths ? "yes" : "no") << Qt::endl;
    return expected == timed.paths ? 0 : 1;
}

} // namespace

ORVANE_BENCH_COMMAND(makeTree, "make-tree", "DIR FILES", makeTree)
ORVANE_BENCH_COMMAND(search, "search", "DIR TEXT", search)
