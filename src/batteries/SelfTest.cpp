#include "batteries/SelfTest.h"

#include "batteries/FileOpsSelfTest.h"
#include "batteries/PhoneParityBattery.h"
#include "core/EntryText.h"
#include "core/Preferences.h"
#include "core/WindowCommands.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QUuid>

namespace orvane {

namespace {
void touch(const QString& path, qint64 size) {
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) f.write(QByteArray(int(size), 'x'));
}

QStringList names(const Explorer& w) {
    QStringList list;
    for (const Entry& e : w.entries())
        list << e.name();
    return list;
}
} // namespace

SelfTest::SelfTest() : out(stdout) {}

bool SelfTest::check(const QString& label, bool ok) {
    out << (ok ? "PASS: " : "FAIL: ") << label << Qt::endl;
    return ok;
}

int SelfTest::run() {
    Preferences::setSelfTest(true);
    root = QDir::tempPath() + QStringLiteral("/Quilland-QA-") +
           QUuid::createUuid().toString(QUuid::WithoutBraces);
    if (!check(QStringLiteral("fresh battery folder"), QDir().mkpath(root))) return 1;
    AppDelegate app;
    delegate = &app;
    const bool ok = runBrowsingChecks() && runFileOpsChecks(*this);
    app.windows.clear();
    if (!ok) return 1;
    out << "ALL TESTS PASSED — " << root << Qt::endl;
    return 0;
}

bool SelfTest::runBrowsingChecks() {
    QDir(root).mkpath(QStringLiteral("Folder/Inner"));
    touch(root + QStringLiteral("/file10.txt"), 10);
    touch(root + QStringLiteral("/file2.txt"), 2000);
    touch(root + QStringLiteral("/A.txt"), 1);
    touch(root + QStringLiteral("/.hidden"), 1);
    Explorer* w = delegate->newWindow(QUrl::fromLocalFile(root));
    if (!check(QStringLiteral("window opens on the battery folder"), w->current().toLocalFile() == root))
        return false;
    if (!check(QStringLiteral("hidden files stay hidden"), w->entries().size() == 4)) return false;
    w->commands().run(QStringLiteral("toggleHidden"));
    if (!check(QStringLiteral("hidden files show when asked"), w->entries().size() == 5)) return false;
    w->commands().run(QStringLiteral("toggleHidden"));
    if (!check(QStringLiteral("names sort with numbers as numbers"),
               names(*w) == QStringList({"A.txt", "file2.txt", "file10.txt", "Folder"})))
        return false;
    w->commands().run(QStringLiteral("sortChoice"), 3);
    w->commands().run(QStringLiteral("reverseSort"));
    if (!check(QStringLiteral("size sorts descending"), names(*w).first() == QLatin1String("file2.txt")))
        return false;
    w->commands().run(QStringLiteral("sortChoice"), 0);
    w->commands().run(QStringLiteral("reverseSort"));
    w->commands().run(QStringLiteral("setSearchText"), QStringLiteral("FILE"));
    if (!check(QStringLiteral("search keeps matching names"), w->entries().size() == 2)) return false;
    w->navigate(QUrl::fromLocalFile(root + QStringLiteral("/Folder")));
    if (!check(QStringLiteral("navigation clears the search"),
               w->tabs().current().query.isEmpty() && w->entries().size() == 1))
        return false;
    w->back();
    if (!check(QStringLiteral("back returns"), w->current().toLocalFile() == root)) return false;
    w->forward();
    if (!check(QStringLiteral("forward returns"),
               w->current().toLocalFile().endsWith(QLatin1String("/Folder"))))
        return false;
    w->navigate(QUrl::fromLocalFile(root + QStringLiteral("/missing")));
    const bool reported = w->lastAlert() && w->lastAlert()->text() == QLatin1String("Folder not found");
    if (w->lastAlert()) w->lastAlert()->close();
    if (!check(QStringLiteral("a missing folder is reported"), reported)) return false;
    w->newTab();
    w->closeTab();
    if (!check(QStringLiteral("a second tab opens and closes"), w->tabs().count() == 1)) return false;
    return check(QStringLiteral("byte counts read as a file browser writes them"),
                 byteCountText(1500000) == QLatin1String("1.5 MB"));
}

int runPhoneParityTest() {
    return PhoneParityBattery().run();
}

} // namespace orvane
