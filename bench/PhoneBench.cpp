#include "BenchCommand.h"
#include "views/FileTable.h"

#include "core/WindowListing.h"
#include "phone/AndroidBrowser.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneAddress.h"
#include "phone/PhoneBridge.h"
#include "phone/PhoneLocation.h"
#include "phone/PhoneTransfer.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include "views/EntryTableModel.h"
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace orvane;

namespace {

bool writeRandom(const QString& path, qint64 size) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    QByteArray block(std::min<qint64>(size, 8 << 20), Qt::Uninitialized);
    for (qint64 done = 0; done < size; done += block.size()) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        if (file.write(block.constData(), std::min<qint64>(block.size(), size - done)) < 0) return false;
    }
    return true;
}

// 1,000 files of a few KiB in ten folders, and one 256 MiB file.
bool makeTree(const QString& root) {
    for (int i = 0; i < 1000; ++i) {
        const QString folder = root + QStringLiteral("/folder %1").arg(i / 100);
        if (!QDir().mkpath(folder) ||
            !writeRandom(folder + QStringLiteral("/file %1.bin").arg(i), 2048 + (i % 7) * 1024))
            return false;
    }
    return writeRandom(root + QStringLiteral("/big.bin"), qint64(256) << 20);
}

PhoneItem storageRoot() {
    PhoneItem root;
    root.id = phoneRootHandle;
    root.storage = 65537;
    root.name = QStringLiteral("Internal storage");
    root.folder = true;
    return root;
}

// Milliseconds that one transfer takes, or -1 when it fails.
double timed(const std::function<void(PhoneTransfer&, PhoneTransfer::Done)>& start) {
    QEventLoop loop;
    std::optional<QString> error;
    QElapsedTimer timer;
    timer.start();
    auto transfer = std::make_shared<PhoneTransfer>();
    start(*transfer, [&](const std::optional<QString>& outcome) {
        error = outcome;
        loop.quit();
    });
    loop.exec();
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    if (error) benchOut() << "failed: " << *error << Qt::endl;
    return error ? -1 : ms;
}

std::optional<PhoneItem> named(const QString& name) {
    std::optional<PhoneItem> found;
    QEventLoop loop;
    PhoneBridge::run({QStringLiteral("65537"), QStringLiteral("4294967295")}, nullptr,
                     [&](const PhoneReply& r) {
                         for (const PhoneItem& item : r.items.value_or(QList<PhoneItem>()))
                             if (item.name == name) found = item;
                         loop.quit();
                     });
    loop.exec();
    return found;
}

// One round of each, every one starting from clean disk caches; nothing is left on either side.
bool round(const QString& dir, const QString& tree, const QString& phone, double& cp, double& up,
           double& down) {
    const QString copy = dir + QStringLiteral("/copy");
    const QString back = dir + QStringLiteral("/back");
    timeShell(QStringLiteral("sync"));
    cp = timeShell(QStringLiteral("cp -r '%1' '%2'").arg(tree, copy));
    timeShell(QStringLiteral("sync"));
    up = timed([&](PhoneTransfer& t, PhoneTransfer::Done done) {
        t.upload({QFile::encodeName(tree)}, storageRoot(), done);
    });
    const std::optional<PhoneItem> sent = named(QStringLiteral("Tree"));
    timeShell(QStringLiteral("sync"));
    down = sent && QDir().mkpath(back) ? timed([&](PhoneTransfer& t, PhoneTransfer::Done done) {
        t.download({*sent}, QFile::encodeName(back), done);
    })
                                       : -1;
    const bool cleared = QDir(copy).removeRecursively() && QDir(back).removeRecursively() &&
                         QDir(phone + QStringLiteral("/Internal storage/Tree")).removeRecursively();
    return cleared && cp >= 0 && up >= 0 && down >= 0;
}

// Sends a tree to a simulated phone on the same disk and brings it back, against a cp -r of it;
// the best of three rounds, as other work on the machine weighs on any single one.
int phoneTransfer(const QStringList& args) {
    QTemporaryDir dir(args.isEmpty() ? QDir::tempPath() + QStringLiteral("/orvane-bench-XXXXXX")
                                     : args.first() + QStringLiteral("/orvane-bench-XXXXXX"));
    const QString tree = dir.filePath(QStringLiteral("local/Tree"));
    const QString phone = dir.filePath(QStringLiteral("phone"));
    if (!dir.isValid() || !makeTree(tree) || !QDir().mkpath(phone + QStringLiteral("/Internal storage")))
        return 1;
    qputenv("MTP_BRIDGE_SIMULATE", QFile::encodeName(phone));
    double cp = 1e18, up = 1e18, down = 1e18;
    for (int i = 0; i < 3; ++i) {
        double c, u, d;
        if (!round(dir.path(), tree, phone, c, u, d)) return 1;
        cp = std::min(cp, c);
        up = std::min(up, u);
        down = std::min(down, d);
    }
    benchOut() << "upload ms " << qint64(up) << "\ndownload ms " << qint64(down) << "\ncp ms " << qint64(cp)
               << Qt::endl;
    return 0;
}

// From the request to the sorted rows in a window's model, for a phone folder of 5,000 items.
int phoneList(const QStringList&) {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("phone/Internal storage/DCIM"));
    QDir().mkpath(folder);
    for (int i = 0; i < 5000; ++i) {
        QFile file(folder + QStringLiteral("/IMG_%1.jpg").arg(i * 7919 % 5000, 5, 10, QLatin1Char('0')));
        if (!file.open(QIODevice::WriteOnly)) return 1;
    }
    qputenv("MTP_BRIDGE_SIMULATE", QFile::encodeName(dir.filePath(QStringLiteral("phone"))));
    std::optional<QList<PhoneItem>> chain;
    QEventLoop loop;
    PhoneAddress::resolve(QStringLiteral("Android USB/Internal storage/DCIM"),
                          [&](const PhoneAddress::Outcome& o) {
                              chain = o.chain;
                              loop.quit();
                          });
    loop.exec();
    if (!chain) return 1;
    AppDelegate app;
    Explorer* window = app.newWindow(PhoneLocation::url(chain->mid(0, 1)));
    PhoneBrowserState& state = window->findChild<AndroidContent*>()->active()->state();
    QObject::connect(&state, &PhoneBrowserState::listed, &loop, &QEventLoop::quit);
    loop.exec();
    // Into the folder from its parent each time: a listing the window has not seen before.
    double best = 1e18;
    for (int round = 0; round < 6; ++round) {
        QElapsedTimer timer;
        timer.start();
        window->navigate(PhoneLocation::url(*chain));
        loop.exec();
        if (round > 0)
            best = std::min(best, double(timer.nsecsElapsed()) / 1e6); // the first loads the type database
        if (window->table()->model()->rowCount() != 5000) return 1;
        window->navigate(PhoneLocation::url(chain->mid(0, 1)));
        loop.exec();
    }
    benchOut() << "list ms " << qint64(best) << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(phoneTransfer, "phone-transfer", "[DIR]", phoneTransfer)
ORVANE_BENCH_COMMAND(phoneList, "phone-list", "", phoneList)
