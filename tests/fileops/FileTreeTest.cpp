#include "fileops/FileTree.h"
#include "fileops/TransferEngine.h"
#include "fileops/TreeCopy.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstring>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

QByteArray native(const QString& path) {
    return NativePath::encode(path);
}

struct stat statOf(const QString& path) {
    struct stat st {};
    lstat(native(path).constData(), &st);
    return st;
}

// A file of `size` bytes whose only data is a 4 KiB block at each offset; the rest are holes.
QString sparseFile(const QString& path, qint64 size, const QList<qint64>& blocks) {
    TempTree::writeFile(path);
    const int fd = open(native(path).constData(), O_WRONLY | O_CLOEXEC);
    const QByteArray block(4096, 'x');
    for (qint64 at : blocks)
        if (pwrite(fd, block.constData(), size_t(block.size()), at) != block.size()) qWarning("short write");
    if (ftruncate(fd, size) != 0) qWarning("no truncate");
    close(fd);
    return path;
}

// An access ACL as the kernel stores it: the owner rw-, a named user rw-, the owning group r--, and a
// mask of rw-, which is what the mode's group bits then show.
QByteArray aclWithMask() {
    const struct {
        quint16 tag, perm;
        quint32 id;
    } entries[] = {{0x01, 6, ~0u}, {0x02, 6, 65534}, {0x04, 4, ~0u}, {0x10, 6, ~0u}, {0x20, 4, ~0u}};
    QByteArray value(4, '\0');
    value[0] = 2; // version
    for (const auto& e : entries)
        value.append(reinterpret_cast<const char*>(&e), sizeof e);
    return value;
}

QByteArray attribute(const QString& path, const char* name) {
    char value[256];
    const ssize_t n = lgetxattr(native(path).constData(), name, value, sizeof value);
    return n < 0 ? QByteArray() : QByteArray(value, n);
}

int openFiles() {
    return int(QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size());
}

} // namespace

class FileTreeTest : public QObject {
    Q_OBJECT

private slots:
    // One bad item no longer throws away the whole folder: the rest arrives, each bad one is named, and
    // the undo step covers what arrived.
    void partialFolderCopy() {
        TempTree tree;
        tree.file("pack/good.txt", "g");
        tree.file("pack/sub/deep.txt", "d");
        QString chain = "pack/tower";
        for (int i = 0; i < 40; ++i)
            chain += "/level";
        tree.file(chain + "/top.txt", "t");
        const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, native(tree.path("pack/sock")).constData(), sizeof address.sun_path);
        QVERIFY(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
        close(fd);
        const TransferPlan plan = TransferEngine::plan({tree.path("pack")}, false, tree.folder("target"));
        // Each folder level holds two descriptors: a tower this deep runs out of them.
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        rlimit low = before;
        low.rlim_cur = rlim_t(openFiles() + 24);
        setrlimit(RLIMIT_NOFILE, &low);
        const TransferResult result = TransferEngine::run(plan.jobs, false, {});
        setrlimit(RLIMIT_NOFILE, &before);
        QCOMPARE(result.finished.size(), size_t(1));
        QCOMPARE(result.failures.size(), 2);
        QVERIFY(result.failures.contains("pack/sock: " + FileTree::systemText(ENOTSUP)));
        QVERIFY(result.failures.filter("pack/tower/level/").filter(FileTree::systemText(EMFILE)).size() == 1);
        QCOMPARE(TempTree::contents(tree.path("target/pack/good.txt")), QByteArray("g"));
        QCOMPARE(TempTree::contents(tree.path("target/pack/sub/deep.txt")), QByteArray("d"));
        QVERIFY(TempTree::present(tree.path("target/pack/tower/level")));
        QString error;
        QVERIFY2(result.undo()(error), qPrintable(error));
        QVERIFY(!TempTree::present(tree.path("target/pack")));
    }

    void holesStayHoles_data() {
        QTest::addColumn<bool>("acrossVolumes");
        QTest::newRow("copy") << false;
        QTest::newRow("move from another volume") << true;
    }
    // A disk image of 256 MiB that holds 12 KiB of data stays that small, with the same bytes.
    void holesStayHoles() {
        QFETCH(bool, acrossVolumes);
        TempTree tree;
        QTemporaryDir shm("/dev/shm/orvane-sparse-XXXXXX");
        if (acrossVolumes && (!shm.isValid() || statOf(shm.path()).st_dev == statOf(tree.path()).st_dev))
            QSKIP("no second volume at /dev/shm");
        const qint64 size = qint64(256) << 20;
        const QString source = sparseFile((acrossVolumes ? shm.path() : tree.path()) + "/disk.img", size,
                                          {0, 100 << 20, size - 4096});
        const QString copy = tree.path("copy.img");
        QString error;
        QVERIFY2(acrossVolumes ? FileTree::move(source, copy, error) : FileTree::copy(source, copy, error),
                 qPrintable(error));
        const struct stat st = statOf(copy);
        QCOMPARE(qint64(st.st_size), size);
        QVERIFY2(st.st_blocks * 512 <= 1 << 20, qPrintable(QString::number(st.st_blocks)));
        const int fd = open(native(copy).constData(), O_RDONLY | O_CLOEXEC);
        char byte = 0;
        for (qint64 at : {qint64(0), qint64(100 << 20), size - 1})
            QVERIFY(pread(fd, &byte, 1, at) == 1 && byte == 'x');
        QVERIFY(pread(fd, &byte, 1, 50 << 20) == 1 && byte == 0);
        close(fd);
    }

    // Files that tell a size of 0 but have content, as /proc does.
    void sizeZeroReadsToTheEnd() {
        QFile proc("/proc/version");
        if (!proc.open(QIODevice::ReadOnly)) QSKIP("no /proc here");
        const QByteArray expected = proc.readAll();
        QCOMPARE(statOf("/proc/version").st_size, 0);
        TempTree tree;
        QString error;
        QVERIFY2(FileTree::copy("/proc/version", tree.path("version"), error), qPrintable(error));
        QCOMPARE(TempTree::contents(tree.path("version")), expected);
    }

    // ramfs holds modes but no ACLs: the owning group, which the mask limited to r--, must not gain w.
    void modeNeverWiderThanTheAcl() {
        TempTree tree;
        const QString source = tree.file("doc.txt", "doc");
        const QByteArray acl = aclWithMask();
        QVERIFY(setxattr(native(source).constData(), "system.posix_acl_access", acl.constData(),
                         size_t(acl.size()), 0) == 0);
        const QString ram = tree.folder("ram");
        if (mount("orvane", native(ram).constData(), "ramfs", 0, nullptr) != 0)
            QSKIP("cannot mount a ramfs here (needs the right to mount)");
        QString error;
        const bool copied = FileTree::copy(source, ram + "/doc.txt", error);
        const mode_t mode = statOf(ram + "/doc.txt").st_mode & 0777;
        const QByteArray data = TempTree::contents(ram + "/doc.txt");
        umount2(native(ram).constData(), MNT_DETACH);
        QVERIFY2(copied, qPrintable(error));
        QCOMPARE(data, QByteArray("doc"));
        QCOMPARE(mode, mode_t(0644));
    }

    void metadataFollows_data() {
        QTest::addColumn<bool>("move");
        QTest::newRow("copy") << false;
        QTest::newRow("move across volumes") << true;
    }
    // What cp -a keeps: times, mode, attributes, ACLs, hard links. Across volumes a move is a copy, and
    // what it drops is lost for good since the source goes afterwards.
    void metadataFollows() {
        QFETCH(bool, move);
        TempTree tree;
        QTemporaryDir shm("/dev/shm/orvane-move-XXXXXX");
        if (move && (!shm.isValid() || statOf(shm.path()).st_dev == statOf(tree.path()).st_dev))
            QSKIP("no second volume at /dev/shm");
        const QString box = (move ? shm.path() : tree.path()) + "/box";
        const QString one = TempTree::writeFile(box + "/one.txt", "linked");
        QVERIFY(::link(native(one).constData(), native(box + "/two.txt").constData()) == 0);
        const QByteArray acl = aclWithMask();
        QVERIFY(setxattr(native(one).constData(), "user.note", "kept", 4, 0) == 0);
        QVERIFY(setxattr(native(one).constData(), "system.posix_acl_access", acl.constData(),
                         size_t(acl.size()), 0) == 0);
        const timespec old[2] = {{1400000000, 5}, {1500000000, 7}};
        QVERIFY(utimensat(AT_FDCWD, native(one).constData(), old, 0) == 0);
        QVERIFY(utimensat(AT_FDCWD, native(box).constData(), old, 0) == 0);
        QString error;
        QVERIFY2(move ? FileTree::move(box, tree.path("copy"), error)
                      : FileTree::copy(box, tree.path("copy"), error),
                 qPrintable(error));
        QCOMPARE(TempTree::present(box), !move);
        const struct stat a = statOf(tree.path("copy/one.txt")), b = statOf(tree.path("copy/two.txt"));
        QVERIFY(a.st_ino == b.st_ino && a.st_nlink == 2);
        QCOMPARE(a.st_mode & 07777, mode_t(0664)); // the group bits show the ACL's mask again
        QVERIFY(a.st_mtim.tv_sec == old[1].tv_sec && a.st_mtim.tv_nsec == old[1].tv_nsec);
        QCOMPARE(statOf(tree.path("copy")).st_mtim.tv_sec, old[1].tv_sec);
        QCOMPARE(attribute(tree.path("copy/one.txt"), "user.note"), QByteArray("kept"));
        QCOMPARE(attribute(tree.path("copy/one.txt"), "system.posix_acl_access"), acl);
    }

    // A move's copy notes what it copied; only that leaves the source, never what came or changed since.
    void moveRemovesOnlyWhatItCopied() {
        TempTree tree;
        TempTree::writeFile(tree.path("src/box/old.txt"), "old");
        tree.folder("dst");
        const QString edited = TempTree::writeFile(tree.path("src/box/sub/edited.txt"), "v1");
        TreeCopy copy(true);
        QVERIFY(copy.run(native(tree.path("src/box")), native(tree.path("dst/box"))));
        QVERIFY(copy.problems.empty());
        TempTree::writeFile(tree.path("src/box/new.txt"), "arrived meanwhile");
        const timespec later[2] = {{UTIME_OMIT, 0}, {2000000000, 0}};
        TempTree::writeFile(edited, "v2, longer");
        utimensat(AT_FDCWD, native(edited).constData(), later, 0);
        copy.removeCopied(native(tree.path("src/box")));
        QCOMPARE(TempTree::contents(tree.path("src/box/new.txt")), QByteArray("arrived meanwhile"));
        QCOMPARE(TempTree::contents(edited), QByteArray("v2, longer"));
        QVERIFY(!TempTree::present(tree.path("src/box/old.txt")));
        QStringList where;
        for (const TreeCopy::Problem& p : copy.problems)
            where << QString::fromStdString(p.where);
        where.sort();
        QCOMPARE(where, QStringList({"new.txt", "sub/edited.txt"}));
    }
};

ORVANE_TEST_MAIN(FileTreeTest)
#include "FileTreeTest.moc"
