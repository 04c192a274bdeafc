#include "system/InstanceChannel.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QSignalSpy>

using namespace orvane;
using orvane::test::TempTree;

class InstanceChannelTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::unique_ptr<AppDelegate> app;

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        tree->folder(QStringLiteral("Docs"));
        app = std::make_unique<AppDelegate>();
        app->didFinishLaunching = true;
    }
    void cleanup() {
        app.reset();
        tree.reset();
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

    // A message that never ends is cut off, and opens nothing.
    void anEndlessMessageIsCutOff() {
        new InstanceChannel(*app);
        QLocalSocket client;
        client.connectToServer(InstanceChannel::socketPath());
        QVERIFY(client.waitForConnected(2000));
        client.write(QByteArray(2 << 20, 'x'));
        QTRY_COMPARE(client.state(), QLocalSocket::UnconnectedState);
        QVERIFY(app->windows.empty());
    }
};

ORVANE_TEST_MAIN(InstanceChannelTest)
#include "InstanceChannelTest.moc"
