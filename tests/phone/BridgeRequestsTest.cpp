// Every request kind, through the real client and the real bridge serving a simulated phone.
#include "phone/BridgeHarness.h"
#include "phone/PhoneLocation.h"
#include "support/TestEnvironment.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <fcntl.h>

using namespace orvane;
using namespace orvane::test;

class BridgeRequestsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> phone;
    std::unique_ptr<TempTree> local;

    QString internal(const QString& relative = {}) const {
        return phone->path(QStringLiteral("Internal storage/") + relative);
    }

    PhoneItem listed(const QString& name, const QString& parent = root) {
        const Outcome outcome = call({storage, parent});
        const std::optional<PhoneItem> item = findNamed(outcome.reply, name);
        if (!item) qWarning("%s is not listed", qPrintable(name));
        return item.value_or(PhoneItem());
    }

    // The most memory the process has held, in KiB.
    static qint64 peakKiB(int pid) {
        QFile status(QStringLiteral("/proc/%1/status").arg(pid));
        if (!status.open(QIODevice::ReadOnly)) return -1;
        const QString line =
            QString::fromLatin1(status.readAll()).section(QStringLiteral("VmHWM:"), 1).section(u'\n', 0, 0);
        return line.trimmed().section(u' ', 0, 0).toLongLong();
    }

private slots:
    void init() {
        phone = std::make_unique<TempTree>();
        local = std::make_unique<TempTree>();
        phone->folder(QStringLiteral("Internal storage"));
        phone->folder(QStringLiteral("SD card"));
        simulate(phone->path());
    }

    void storagesAreRootItemsInNameOrder() {
        const Outcome outcome = call({});
        QVERIFY(!outcome.reply.error);
        const QList<PhoneItem> items = outcome.reply.items.value_or(QList<PhoneItem>());
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0].name, QStringLiteral("Internal storage"));
        QCOMPARE(items[0].storage, 65537u);
        QCOMPARE(items[1].name, QStringLiteral("SD card"));
        QCOMPARE(items[1].storage, 131073u);
        for (const PhoneItem& item : items) {
            QCOMPARE(item.id, phoneRootHandle);
            QVERIFY(item.folder);
        }
    }

    void listingsGiveHandlesThatListTheirChildren() {
        phone->file(QStringLiteral("Internal storage/DCIM/Camera/IMG_1.jpg"), "jpeg");
        phone->folder(QStringLiteral("Internal storage/Empty"));
        const PhoneItem dcim = listed(QStringLiteral("DCIM"));
        QVERIFY(dcim.folder);
        QCOMPARE(dcim.storage, 65537u);
        const PhoneItem camera = listed(QStringLiteral("Camera"), QString::number(dcim.id));
        const PhoneItem photo = listed(QStringLiteral("IMG_1.jpg"), QString::number(camera.id));
        QVERIFY(!photo.folder);
        QCOMPARE(photo.size, 4u);
        QVERIFY(photo.modified.value_or(0) > 0);
        const Outcome empty = call({storage, QString::number(listed(QStringLiteral("Empty")).id)});
        QVERIFY(!empty.reply.error);
        QVERIFY(empty.reply.items && empty.reply.items->isEmpty());
    }

    // A name that isn't UTF-8 must not turn the whole listing into a transport failure.
    void oddlyEncodedNamesStillList() {
        const QByteArray raw = QFile::encodeName(internal()) + "bad\xff name.txt";
        QFile odd;
        QVERIFY(odd.open(::open(raw.constData(), O_WRONLY | O_CREAT | O_EXCL, 0644), QIODevice::WriteOnly,
                         QFileDevice::AutoCloseHandle));
        odd.close();
        // The temporary folder's own clean-up goes by text and can't reach this name.
        const auto removeOdd = qScopeGuard([&] { ::unlink(raw.constData()); });
        phone->file(QStringLiteral("Internal storage/fine.txt"), "ok");
        const Outcome outcome = call({storage, root});
        QVERIFY(!outcome.reply.error);
        QCOMPARE(outcome.reply.items->size(), 2);
        QVERIFY(findNamed(outcome.reply, QStringLiteral("bad\uFFFD name.txt")));
    }

    void sizesBeyondFourGigabytesAreExact() {
        QFile sparse(internal(QStringLiteral("huge.bin")));
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(5368709121LL));
        sparse.close();
        QCOMPARE(listed(QStringLiteral("huge.bin")).size, 5368709121ull);
    }

    void transfersAreByteExact_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("size");
        QTest::newRow("empty file") << QStringLiteral("empty.txt") << qint64(0);
        QTest::newRow("one byte") << QStringLiteral("one") << qint64(1);
        QTest::newRow("one mebibyte and a bit") << QStringLiteral("photo 1.jpg") << qint64((1 << 20) + 7);
        QTest::newRow("arabic name") << QStringLiteral("ملف عربي.txt") << qint64(4099);
        QTest::newRow("accents and symbols") << QStringLiteral("Résumé #2 (final) 100%.pdf") << qint64(12);
        QTest::newRow("twenty mebibytes") << QStringLiteral("video.mp4") << qint64(20 << 20);
    }

    void transfersAreByteExact() {
        QFETCH(QString, name);
        QFETCH(qint64, size);
        const QByteArray content = pattern(size, int(size));
        const QString source = local->file(QStringLiteral("out/") + name, content);
        const Outcome sent = call({QStringLiteral("put"), storage, root, source});
        QVERIFY2(!sent.reply.error, qPrintable(sent.reply.error.value_or(QString())));
        QCOMPARE(sent.progress.value(sent.progress.size() - 1), 1.0);
        const PhoneItem item = listed(name);
        QCOMPARE(item.name, name);
        QCOMPARE(qint64(item.size), size);
        const QString target = local->path(QStringLiteral("back-") + name);
        const Outcome got = call({QStringLiteral("get"), QString::number(item.id), target});
        QVERIFY2(!got.reply.error, qPrintable(got.reply.error.value_or(QString())));
        QCOMPARE(got.events.last(), QStringLiteral("done"));
        QVERIFY(readAll(target) == content);
    }

    // Several files in one request go in order and stop at the first error; a malformed one moves nothing.
    void severalFilesInOneRequestStopAtTheFirstError() {
        const QString a = local->file(QStringLiteral("a.txt"), "a"),
                      c = local->file(QStringLiteral("c.txt"), "c");
        const Outcome sent =
            call({QStringLiteral("put"), storage, root, a, local->path(QStringLiteral("b.txt")), c});
        QVERIFY(sent.reply.error);
        QCOMPARE(sent.progress.count(0.0),
                 1); // the second file started from 0; the first starts at the client
        QCOMPARE(readAll(internal(QStringLiteral("a.txt"))), QByteArray("a"));
        QVERIFY(!QFileInfo::exists(internal(QStringLiteral("c.txt"))));

        const QString id = QString::number(listed(QStringLiteral("a.txt")).id);
        const QString first = local->path(QStringLiteral("1")), second = local->path(QStringLiteral("2"));
        QCOMPARE(call({QStringLiteral("get"), id, first, QStringLiteral("x"), second}).reply.error,
                 std::optional<QString>(QStringLiteral("Bad request.")));
        QCOMPARE(call({QStringLiteral("get"), id, first, id}).reply.error,
                 std::optional<QString>(QStringLiteral("Bad request.")));
        QVERIFY(!QFileInfo::exists(first));
        const QString third = local->path(QStringLiteral("3"));
        QVERIFY(call({QStringLiteral("get"), id, first, QStringLiteral("999999"), second, id, third})
                    .reply.error);
        QCOMPARE(readAll(first), QByteArray("a"));
        QVERIFY(!QFileInfo::exists(second) && !QFileInfo::exists(third));
    }

    void nothingIsOverwritten() {
        const QString source = local->file(QStringLiteral("a.txt"), "new");
        phone->file(QStringLiteral("Internal storage/a.txt"), "old");
        QVERIFY(call({QStringLiteral("put"), storage, root, source}).reply.error);
        QCOMPARE(readAll(internal(QStringLiteral("a.txt"))), QByteArray("old"));
        const QString existing = local->file(QStringLiteral("there.txt"), "mine");
        QVERIFY(call({QStringLiteral("get"), QString::number(listed(QStringLiteral("a.txt")).id), existing})
                    .reply.error);
        QCOMPARE(readAll(existing), QByteArray("mine"));
        phone->folder(QStringLiteral("Internal storage/Taken"));
        QVERIFY(call({QStringLiteral("mkdir"), storage, root, QStringLiteral("Taken")}).reply.error);
        QVERIFY(call({QStringLiteral("rename"), QString::number(listed(QStringLiteral("a.txt")).id),
                      QStringLiteral("Taken")})
                    .reply.error);
    }

    // The phone's folder is its whole world. Items swapped for links to the outside after they were
    // listed, and links there from the start, lead nowhere: nothing outside is read or changed.
    void linksNeverLeadOutOfThePhone_data() {
        QTest::addColumn<QStringList>("request"); // DOCS, INNER, SUB, BIG: handles from before the swap
        QTest::newRow("list a folder") << QStringList{storage, "DOCS"};
        QTest::newRow("read a file in it") << QStringList{"get", "INNER", "TARGET"};
        QTest::newRow("read a big file") << QStringList{"get", "BIG", "TARGET"};
        QTest::newRow("read its picture size") << QStringList{"info", "INNER"};
        QTest::newRow("write into it") << QStringList{"put", storage, "DOCS", "SOURCE"};
        QTest::newRow("make a folder in it") << QStringList{"mkdir", storage, "DOCS", "new"};
        QTest::newRow("rename in it") << QStringList{"rename", "INNER", "renamed.txt"};
        QTest::newRow("move out of it") << QStringList{"move", "INNER", storage, root};
        QTest::newRow("delete below it") << QStringList{"delete", "SUB"};
    }

    void linksNeverLeadOutOfThePhone() {
        QFETCH(QStringList, request);
        phone->file(QStringLiteral("Internal storage/Docs/inner.txt"), "inner");
        phone->file(QStringLiteral("Internal storage/Docs/Sub/deep.txt"), "deep");
        phone->file(QStringLiteral("Internal storage/big.bin"), "small");
        local->file(QStringLiteral("outside/inner.txt"), "outside");
        local->file(QStringLiteral("outside/Sub/deep.txt"), "deep outside");
        local->sizedFile(QStringLiteral("outside/big.bin"), 5 << 20);
        const PhoneItem docs = listed(QStringLiteral("Docs"));
        const QMap<QString, QString> handles{
            {"DOCS", QString::number(docs.id)},
            {"INNER", QString::number(listed(QStringLiteral("inner.txt"), QString::number(docs.id)).id)},
            {"SUB", QString::number(listed(QStringLiteral("Sub"), QString::number(docs.id)).id)},
            {"BIG", QString::number(listed(QStringLiteral("big.bin")).id)},
            {"TARGET", local->path(QStringLiteral("target"))},
            {"SOURCE", local->file(QStringLiteral("new.txt"), "new")}};
        QVERIFY(QDir(internal(QStringLiteral("Docs"))).removeRecursively());
        QVERIFY(QFile::remove(internal(QStringLiteral("big.bin"))));
        const QString outside = local->path(QStringLiteral("outside"));
        QVERIFY(QFile::link(outside, internal(QStringLiteral("Docs"))));
        QVERIFY(QFile::link(outside + QStringLiteral("/big.bin"), internal(QStringLiteral("big.bin"))));
        QVERIFY(QFile::link(outside, phone->path(QStringLiteral("Linked"))));
        const auto snapshot = [&] {
            QStringList seen;
            for (QDirIterator it(outside, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                                 QDirIterator::Subdirectories);
                 it.hasNext();)
                seen << it.next() + u'=' + QString::fromLatin1(readAll(it.filePath()).toHex());
            return seen;
        };
        const QStringList before = snapshot();
        for (QString& arg : request)
            arg = handles.value(arg, arg);
        const Outcome outcome = call(request);
        QVERIFY(outcome.reply.error);
        QCOMPARE(snapshot(), before);
        QVERIFY(!QFileInfo::exists(handles["TARGET"]));
        QVERIFY(!findNamed(call({}).reply, QStringLiteral("Linked")));
        const PhoneReply top = call({storage, root}).reply;
        QVERIFY(top.items && !findNamed(top, QStringLiteral("Docs")) &&
                !findNamed(top, QStringLiteral("big.bin")));
    }

    void mkdirAnswersTheNewHandle() {
        const Outcome made = call({QStringLiteral("mkdir"), storage, root, QStringLiteral("صور جديدة")});
        QVERIFY(!made.reply.error);
        QVERIFY(made.reply.id);
        const PhoneItem folder = listed(QStringLiteral("صور جديدة"));
        QCOMPARE(folder.id, *made.reply.id);
        QVERIFY(folder.folder);
        QVERIFY(QFileInfo(internal(QStringLiteral("صور جديدة"))).isDir());
        const Outcome inner =
            call({QStringLiteral("mkdir"), storage, QString::number(folder.id), QStringLiteral("x")});
        QVERIFY(inner.reply.id && *inner.reply.id != folder.id);
    }

    void moveAndRenameKeepTheHandle() {
        phone->file(QStringLiteral("Internal storage/Docs/inner.txt"), "inner");
        phone->file(QStringLiteral("Internal storage/note.txt"), "note");
        phone->folder(QStringLiteral("SD card/Backup"));
        const PhoneItem docs = listed(QStringLiteral("Docs"));
        const PhoneItem inner = listed(QStringLiteral("inner.txt"), QString::number(docs.id));
        const PhoneItem note = listed(QStringLiteral("note.txt"));
        const QString noteId = QString::number(note.id);
        QVERIFY(!call({QStringLiteral("move"), noteId, storage, QString::number(docs.id)}).reply.error);
        QVERIFY(!call({QStringLiteral("rename"), noteId, QStringLiteral("renamed.txt")}).reply.error);
        QCOMPARE(listed(QStringLiteral("renamed.txt"), QString::number(docs.id)).id, note.id);
        // A folder moved to another storage takes its contents' handles along.
        const Outcome sd = call({QStringLiteral("131073"), root});
        const QString backup = QString::number(findNamed(sd.reply, QStringLiteral("Backup"))->id);
        QVERIFY(!call({QStringLiteral("move"), QString::number(docs.id), QStringLiteral("131073"), backup})
                     .reply.error);
        QVERIFY(!call({QStringLiteral("rename"), QString::number(docs.id), QStringLiteral("Papers")})
                     .reply.error);
        const QString copy = local->path(QStringLiteral("inner.txt"));
        QVERIFY(!call({QStringLiteral("get"), QString::number(inner.id), copy}).reply.error);
        QCOMPARE(readAll(copy), QByteArray("inner"));
        QVERIFY(QFile::exists(phone->path(QStringLiteral("SD card/Backup/Papers/renamed.txt"))));
        QVERIFY(call({QStringLiteral("move"), backup, QStringLiteral("131073"), QString::number(docs.id)})
                    .reply.error);
    }

    void deleteTakesAFolderWithItsContents() {
        phone->file(QStringLiteral("Internal storage/Old/a/b/c.txt"), "c");
        phone->folder(QStringLiteral("Internal storage/Old/empty"));
        const PhoneItem old = listed(QStringLiteral("Old"));
        const PhoneItem a = listed(QStringLiteral("a"), QString::number(old.id));
        QVERIFY(!call({QStringLiteral("delete"), QString::number(old.id)}).reply.error);
        QVERIFY(!findNamed(call({storage, root}).reply, QStringLiteral("Old")));
        QVERIFY(!QFileInfo::exists(internal(QStringLiteral("Old"))));
        QVERIFY(call({storage, QString::number(a.id)}).reply.error);
        QVERIFY(call({QStringLiteral("delete"), root}).reply.error);
    }

    void infoReadsDimensionsAndCreation() {
        QImage image(37, 21, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(internal(QStringLiteral("shot.png"))));
        QVERIFY(image.save(internal(QStringLiteral("shot.jpg"))));
        for (const QString& name : {QStringLiteral("shot.png"), QStringLiteral("shot.jpg")}) {
            const Outcome info = call({QStringLiteral("info"), QString::number(listed(name).id)});
            QVERIFY(!info.reply.error);
            QCOMPARE(info.reply.width, std::optional<quint32>(37));
            QCOMPARE(info.reply.height, std::optional<quint32>(21));
            const std::optional<QDateTime> created = phoneDate(info.reply.created);
            QVERIFY(created);
            QCOMPARE(created->toSecsSinceEpoch(),
                     QFileInfo(internal(name)).lastModified().toSecsSinceEpoch());
        }
        phone->file(QStringLiteral("Internal storage/plain.txt"), "text");
        const Outcome plain =
            call({QStringLiteral("info"), QString::number(listed(QStringLiteral("plain.txt")).id)});
        QVERIFY(!plain.reply.error && !plain.reply.width && !plain.reply.height);
    }

    void thumbnailsOrTheExactLiteral() {
        phone->file(QStringLiteral("Internal storage/song.mp3"), "ID3");
        const QString target = local->path(QStringLiteral("thumb.jpg"));
        const Outcome none =
            call({QStringLiteral("thumb"), QString::number(listed(QStringLiteral("song.mp3")).id), target});
        QCOMPARE(none.reply.error,
                 std::optional<QString>(QStringLiteral("No thumbnail available from phone.")));
        QVERIFY(!QFile::exists(target));
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::blue);
        QVERIFY(image.save(internal(QStringLiteral("pic.jpg"))));
        const Outcome some =
            call({QStringLiteral("thumb"), QString::number(listed(QStringLiteral("pic.jpg")).id), target});
        QVERIFY(!some.reply.error);
        QCOMPARE(QImage(target).size(), QSize(8, 8));
    }

    void commandErrorsKeepTheBridge() {
        const Outcome missing =
            call({QStringLiteral("get"), QStringLiteral("999999"), local->path(QStringLiteral("x"))});
        QVERIFY(missing.reply.error);
        QVERIFY(*missing.reply.error != PhoneBridge::unavailableText());
        const QList<int> before = liveBridges();
        QCOMPARE(before.size(), 1);
        QVERIFY(call({QStringLiteral("frobnicate")}).reply.error);
        QVERIFY(call({QStringLiteral("get"), QStringLiteral("-1"), QStringLiteral("/tmp/x")}).reply.error);
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
        QCOMPARE(liveBridges(), before);
    }

    // A request line with no end in sight is refused without being kept, so it cannot grow the bridge.
    void overlongRequestLinesAreRefused() {
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
        QCOMPARE(liveBridges().size(), 1);
        const int bridge = liveBridges().value(0);
        const qint64 before = peakKiB(bridge);
        const Outcome refused = call({QString(64 << 20, u'x')});
        QCOMPARE(refused.reply.error, std::optional<QString>(QStringLiteral("Bad request.")));
        QCOMPARE(liveBridges(), QList<int>{bridge});
#ifndef __SANITIZE_ADDRESS__ // which holds freed memory back in quarantine, so the peak tells nothing
        const qint64 grown = peakKiB(bridge) - before;
        QVERIFY2(grown < 16 * 1024, qPrintable(QString::number(grown) + QStringLiteral(" KiB")));
#else
        Q_UNUSED(before);
#endif
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
    }

    void aLockedOrAbsentPhoneIsAnErrorNotAnEmptyList() {
        TempTree locked;
        simulate(locked.path());
        QVERIFY(call({}).reply.error);
        QVERIFY(call({QStringLiteral("scan")}).reply.error);
        simulate(locked.path(QStringLiteral("missing")));
        const Outcome absent = call({QStringLiteral("scan")});
        QVERIFY(absent.reply.error && *absent.reply.error != PhoneBridge::unavailableText());
    }

    // A phone that can't be read says why in words a person acts on, at every kind of request.
    void unreachablePhonesSayWhatToDo_data() {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("start");
        QTest::newRow("locked") << "MTP_BRIDGE_LOCKED"
                                << "The phone is locked. Unlock the phone and choose File "
                                   "transfer in its USB settings";
        QTest::newRow("charging only") << "MTP_BRIDGE_CHARGING_ONLY"
                                       << "The phone is connected for charging only. Unlock the phone and "
                                          "choose File transfer in its USB settings";
        QTest::newRow("held, by nobody to be found")
            << "MTP_BRIDGE_HELD"
            << "The phone is in use by another program. Close any other app";
        QTest::newRow("held by a program") << "MTP_BRIDGE_HELD"
                                           << "The phone is in use by sleep (process ";
    }

    void unreachablePhonesSayWhatToDo() {
        QFETCH(QString, variable);
        QFETCH(QString, start);
        const QString node = local->file(QStringLiteral("usb-device-node"), "");
        QProcess holder;
        if (start.contains(QLatin1String("sleep"))) {
            holder.start(QStringLiteral("/bin/sh"),
                         {QStringLiteral("-c"), QStringLiteral("exec 3<\"$0\"; exec sleep 60"), node});
            QVERIFY(holder.waitForStarted());
            QTRY_VERIFY(QFile::exists(QStringLiteral("/proc/%1/fd/3").arg(holder.processId())));
        }
        phone->file(QStringLiteral("Internal storage/a.txt"), "a");
        const QString id = QString::number(listed(QStringLiteral("a.txt")).id);
        simulate(phone->path(),
                 {{variable, variable == QLatin1String("MTP_BRIDGE_HELD") ? node : QStringLiteral("1")}});
        const QString target = local->path(QStringLiteral("got.txt"));
        for (const QStringList& request :
             {QStringList{}, QStringList{QStringLiteral("scan")}, QStringList{storage, root},
              QStringList{QStringLiteral("get"), id, target}}) {
            const Outcome outcome = call(request);
            QVERIFY2(outcome.reply.error && outcome.reply.error->startsWith(start),
                     qPrintable(outcome.reply.error.value_or(QStringLiteral("no error"))));
            QVERIFY(outcome.reply.error->endsWith(QLatin1String("then click Refresh.")));
        }
        QVERIFY(!QFile::exists(target));
        holder.kill();
        holder.waitForFinished();
    }
};

ORVANE_TEST_MAIN(BridgeRequestsTest)
#include "BridgeRequestsTest.moc"
