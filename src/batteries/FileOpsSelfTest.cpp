#include "batteries/FileOpsSelfTest.h"

#include "batteries/SelfTest.h"
#include "fileops/FileClipboard.h"
#include "fileops/FileCommands.h"
#include "fileops/FileNames.h"
#include "fileops/FileTrash.h"
#include "fileops/TransferEngine.h"
#include "fileops/TransferProgressSnapshot.h"
#include "kit/TransferProgressEdge.h"

#include <QClipboard>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTimer>
#include <optional>

namespace orvane {

namespace {

void write(const QString& path, const QByteArray& data) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(data);
}

QByteArray read(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A transfer as a paste makes it, waited for on the main loop, with a minute's limit.
std::optional<TransferResult> transfer(const QStringList& sources, bool moving, const QString& target) {
    const TransferPlan plan = TransferEngine::plan(sources, moving, target);
    TransferEngine engine;
    std::optional<TransferResult> result;
    QEventLoop loop;
    QObject::connect(&engine, &TransferEngine::finished, [&](const TransferResult& r) {
        result = r;
        loop.quit();
    });
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    if (engine.start(plan.jobs, moving)) loop.exec();
    return result;
}

bool namingChecks(SelfTest& t, const QString& root) {
    write(root + QStringLiteral("/hello.txt"), "hello");
    write(root + QStringLiteral("/hello - Copy.txt"), "");
    QDir(root).mkpath(QStringLiteral("my.photos"));
    return t.check(QStringLiteral("a second copy is numbered from 2"),
                   FileNames::destination(root + QStringLiteral("/hello.txt"), root) ==
                       root + QStringLiteral("/hello - Copy (2).txt")) &&
           t.check(QStringLiteral("a folder's dots are no extension"),
                   FileNames::destination(root + QStringLiteral("/my.photos"), root) ==
                       root + QStringLiteral("/my.photos - Copy")) &&
           t.check(
               QStringLiteral("rename refuses a taken name"),
               !FileCommands::rename(root + QStringLiteral("/hello.txt"), QStringLiteral("hello - Copy.txt"))
                    .ok) &&
           t.check(QStringLiteral("rename refuses a colon"),
                   FileCommands::rename(root + QStringLiteral("/hello.txt"), QStringLiteral("a:b")).title ==
                       FileNames::invalidNameTitle());
}

bool copyChecks(SelfTest& t, const QString& root) {
    const QString source = root + QStringLiteral("/hello.txt");
    const auto copied = transfer({source}, false, root);
    const QString copy = root + QStringLiteral("/hello - Copy (2).txt");
    if (!t.check(QStringLiteral("copy into the own folder makes a numbered copy"),
                 copied && copied->failures.isEmpty() && read(copy) == "hello" && read(source) == "hello"))
        return false;
    QString error;
    const bool undone = copied->undo()(error);
    return t.check(QStringLiteral("undoing a copy puts it in the Trash"),
                   undone && !QFileInfo::exists(copy)) &&
           t.check(
               QStringLiteral("a folder is refused into itself"),
               TransferEngine::plan({source, root}, false, root + QStringLiteral("/my.photos")).refused());
}

bool moveChecks(SelfTest& t, const QString& root) {
    const QString source = root + QStringLiteral("/ملاحظات.txt");
    write(source, "arabic");
    const QString target = root + QStringLiteral("/my.photos");
    const auto moved = transfer({source, root + QStringLiteral("/gone.txt")}, true, target);
    if (!t.check(QStringLiteral("a move reports the missing item in one line"),
                 moved && moved->finished.size() == 1 && moved->failures.size() == 1 &&
                     !QFileInfo::exists(source)))
        return false;
    QString error;
    const bool undone = moved->undo()(error);
    return t.check(QStringLiteral("undoing a move brings the item back"),
                   undone && read(source) == "arabic") &&
           t.check(QStringLiteral("moving into the same folder does nothing"),
                   TransferEngine::plan({source}, true, root).jobs.empty());
}

bool progressChecks(SelfTest& t, const QString& root) {
    write(root + QStringLiteral("/box/nested/data.bin"), QByteArray(4096, 'd'));
    QFile::link(QStringLiteral("nested/data.bin"), root + QStringLiteral("/box/link"));
    const TransferProgressSnapshot snapshot(
        {{root + QStringLiteral("/box"), root + QStringLiteral("/box2")}});
    const bool untouched = snapshot.fraction() == 0;
    const auto copied = transfer({root + QStringLiteral("/box")}, false, root);
    QFileInfo link(root + QStringLiteral("/box - Copy/link"));
    TransferProgressEdge edge;
    edge.begin();
    edge.update(0.6);
    edge.update(0.3);
    return t.check(QStringLiteral("progress starts at 0"), untouched) &&
           t.check(QStringLiteral("a copied link keeps its text"),
                   copied && link.isSymLink() &&
                       link.symLinkTarget().endsWith(QStringLiteral("box - Copy/nested/data.bin"))) &&
           t.check(QStringLiteral("the progress edge never moves back"), edge.fraction() == 0.6);
}

bool clipboardAndTrashChecks(SelfTest& t, const QString& root) {
    FileClipboard& clip = FileClipboard::shared();
    clip.setClipboard({QUrl::fromLocalFile(root + QStringLiteral("/hello.txt"))}, true);
    const bool cut = clip.pasteMoves();
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    if (!t.check(QStringLiteral("a cut ends when anything else is copied"), cut && !clip.pasteMoves()))
        return false;
    const QString doomed = root + QStringLiteral("/trash me.txt");
    write(doomed, "t");
    const FileTrash::Batch batch = FileTrash::trash({doomed});
    QString error;
    const bool gone = !QFileInfo::exists(doomed) && batch.items.size() == 1;
    return t.check(QStringLiteral("trash and its undo"),
                   gone && FileTrash::undoStep(batch.items)(error) && read(doomed) == "t");
}

} // namespace

bool runFileOpsChecks(SelfTest& test) {
    const QString root = test.folder() + QStringLiteral("/fileops");
    if (!test.check(QStringLiteral("file operations folder"),
                    !test.folder().isEmpty() && QDir().mkpath(root)))
        return false;
    return namingChecks(test, root) && copyChecks(test, root) && moveChecks(test, root) &&
           progressChecks(test, root) && clipboardAndTrashChecks(test, root);
}

} // namespace orvane
