#include "system/InstanceChannel.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;
using orvane::test::WindowFixture;

namespace {
// Listens as a running instance would, answers every message and notes what it heard.
const char* const listener = R"(use IO::Socket::UNIX; my ($path, $log) = @ARGV;
my $s = IO::Socket::UNIX->new(Type => SOCK_STREAM(), Local => $path, Listen => 5) or die "$!";
while (my $c = $s->accept) { local $/ = "\n\n"; my $m = <$c>;
  open(my $l, '>>', $log); print $l $m; close $l; print $c "ok\n"; close $c; })";
const char* const requester = R"(use IO::Socket::UNIX;
my $c = IO::Socket::UNIX->new(Type => SOCK_STREAM(), Peer => $ARGV[0]) or die "$!";
print $c "$ARGV[1]\n\n"; my $a = <$c>; print $a // "";)";
} // namespace

class InstanceChannelTest : public QObject, WindowFixture {
    Q_OBJECT
    // Another user of this machine, `nobody`, running a program of theirs.
    QProcess* neighbour(const QStringList& command) {
        auto* process = new QProcess(app.get());
        process->start(QStringLiteral("setpriv"),
                       QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                                   QStringLiteral("--clear-groups"), QStringLiteral("--")} +
                           command);
        return process;
    }

    // No session runtime folder, and a temporary folder every user writes to, as /tmp is.
    QString sharedTemp() {
        qunsetenv("XDG_RUNTIME_DIR");
        const QString shared = tree->folder(QStringLiteral("tmp"));
        ::chmod(QFile::encodeName(tree->path()).constData(), 0755);
        ::chmod(QFile::encodeName(shared).constData(), 01777);
        qputenv("TMPDIR", QFile::encodeName(shared));
        return shared;
    }
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");

private slots:
    void init() {
        startProgram();
        tree->folder(QStringLiteral("Docs"));
        app->didFinishLaunching = true;
    }
    void cleanup() {
        for (QProcess* process : app->findChildren<QProcess*>()) {
            process->kill();
            process->waitForFinished();
        }
        stopProgram();
        qputenv("XDG_RUNTIME_DIR", runtime);
        qunsetenv("TMPDIR");
    }

    // Exact bytes survive the channel; lines that are no address are dropped.
    void messagesKeepExactPaths() {
        const QString raw = tree->rawFile("bad\xff name.txt");
        const QUrl web(QStringLiteral("https://example.org/a b"));
        const QList<QUrl> urls = InstanceChannel::decode(
            InstanceChannel::encode({QUrl::fromLocalFile(raw), web}) + "%%% not a url\n\n");
        QCOMPARE(urls.size(), 2);
        QCOMPARE(NativePath::encode(urls[0].toLocalFile()), NativePath::encode(raw));
        QCOMPARE(urls[1], web);
        // What the request asks for travels with it and is no item.
        for (const ExternalOpenMode mode :
             {ExternalOpenMode::Open, ExternalOpenMode::Reveal, ExternalOpenMode::Properties}) {
            const QByteArray message = InstanceChannel::encode({web}, mode);
            QCOMPARE(InstanceChannel::modeOf(message), mode);
            QCOMPARE(InstanceChannel::decode(message), QList<QUrl>{web});
        }
    }

    // A later launch of the real program hands its folder over and ends; the running one shows it.
    void aLaterLaunchHandsItsPathsOver() {
        auto* channel = new InstanceChannel(*app);
        QVERIFY(channel->listening());
        QVERIFY(!(new InstanceChannel(*app))->listening()); // the first one answers
        QProcess later;
        QSignalSpy ended(&later, &QProcess::finished);
        later.start(QCoreApplication::applicationDirPath() + QStringLiteral("/Orvane"),
                    {tree->path(QStringLiteral("Docs"))});
        QVERIFY(ended.wait(20000));
        QCOMPARE(later.exitCode(), 0);
        QTRY_COMPARE(app->windows.size(), size_t(1));
        QCOMPARE(app->windows.front()->current(),
                 QUrl::fromLocalFile(NativePath::canonical(tree->path(QStringLiteral("Docs")))));
    }

    // What a crash left behind answers nobody: the launch opens the items itself and takes the channel.
    void aStaleSocketIsTakenOver() {
        QFile stale(InstanceChannel::socketPath());
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.close();
        QVERIFY(!InstanceChannel::forward({QUrl::fromLocalFile(tree->path())}));
        QVERIFY((new InstanceChannel(*app))->listening());
    }

    // A neighbour who got to the socket's place first never hears a launch, and never swallows it.
    void aNeighbourNeverHearsALaunch_data() {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<bool>("serves"); // whether this launch may still serve the channel
        QTest::newRow("listening at a shared name") << "shared" << true;
        QTest::newRow("our folder made first, open to all") << "open" << false;
        QTest::newRow("our folder a link to theirs") << "link" << false;
        QTest::newRow("their socket in our folder") << "socket" << true;
    }

    void aNeighbourNeverHearsALaunch() {
        if (::geteuid() != 0) QSKIP("another user is played through setpriv, which needs root");
        QFETCH(QString, setup);
        QFETCH(bool, serves);
        const QString shared = sharedTemp(), theirs = tree->folder(QStringLiteral("theirs"));
        QVERIFY(::chown(QFile::encodeName(theirs).constData(), 65534, 65534) == 0);
        const QString ours = InstanceChannel::socketPath(), folder = QFileInfo(ours).path();
        QString at = ours, taken = folder;
        if (setup == "shared") {
            // Where the desktop's own runtime folder would go: taken, so a shared name is all that's left.
            taken = shared + QStringLiteral("/runtime-") +
                    QString::fromLocal8Bit(::getpwuid(::geteuid())->pw_name);
            at = shared + QStringLiteral("/orvane-instance");
        } else if (setup == "socket") {
            at = theirs + QStringLiteral("/socket");
        }
        if (setup != "socket") {
            if (taken == folder) QVERIFY(QDir().rmdir(folder));
            const QString take = setup == "link" ? QStringLiteral("ln -s \"$1\" \"$0\"")
                                                 : QStringLiteral("mkdir -m 0777 \"$0\"");
            QProcess* made = neighbour({QStringLiteral("sh"), QStringLiteral("-c"), take, taken, theirs});
            QVERIFY(made->waitForFinished() && made->exitCode() == 0);
        }
        neighbour({QStringLiteral("perl"), QStringLiteral("-e"), QLatin1String(listener), at,
                   theirs + QStringLiteral("/heard")});
        QTRY_VERIFY(TempTree::present(at));
        if (setup == "socket") QVERIFY(::link(QFile::encodeName(at), QFile::encodeName(ours)) == 0);
        QVERIFY(!InstanceChannel::forward({QUrl::fromLocalFile(tree->path(QStringLiteral("Docs")))}));
        QCOMPARE((new InstanceChannel(*app))->listening(), serves);
        QCOMPARE(TempTree::contents(theirs + QStringLiteral("/heard")), QByteArray());
    }

    // A neighbour who can reach the socket all the same is not served.
    void aNeighboursRequestIsRefused() {
        if (::geteuid() != 0) QSKIP("another user is played through setpriv, which needs root");
        sharedTemp();
        QVERIFY((new InstanceChannel(*app))->listening());
        const QString path = InstanceChannel::socketPath();
        QVERIFY(::chmod(QFile::encodeName(QFileInfo(path).path()).constData(), 0711) == 0);
        QVERIFY(::chmod(QFile::encodeName(path).constData(), 0777) == 0);
        QProcess* request = neighbour({QStringLiteral("perl"), QStringLiteral("-e"), QLatin1String(requester),
                                       path, tree->path(QStringLiteral("Docs"))});
        QSignalSpy ended(request, &QProcess::finished);
        QVERIFY(ended.wait(20000));
        QCOMPARE(request->readAllStandardOutput(), QByteArray());
        QVERIFY(app->windows.empty());
    }

    // A message that never ends is cut off, and opens nothing.
    void anEndlessMessageIsCutOff() {
        new InstanceChannel(*app);
        QLocalSocket client;
        client.connectToServer(InstanceChannel::socketPath());
        QVERIFY(client.waitForConnected(2000));
        client.write(QByteArray((1 << 24) + 4096, 'x'));
        QTRY_COMPARE(client.state(), QLocalSocket::UnconnectedState);
        QVERIFY(app->windows.empty());
    }
};

ORVANE_TEST_MAIN(InstanceChannelTest)
#include "InstanceChannelTest.moc"
