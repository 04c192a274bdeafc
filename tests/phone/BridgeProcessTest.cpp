// The child-process end of the client, against small real programs that misbehave on purpose.
#include "phone/BridgeProcess.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QElapsedTimer>
#include <QStandardPaths>

using namespace orvane;
using namespace orvane::test;

class BridgeProcessTest : public QObject {
    Q_OBJECT

    TempTree tree;

    QString script(const QString& name, const QByteArray& body) {
        const QString path = tree.file(name, "#!/bin/sh\n" + body + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

private slots:
    void linesSplitExactlyAndALastLineNeedsNoNewline() {
        auto process = BridgeProcess::launch(script(QStringLiteral("lines"), "printf 'one\\n\\ntwo\\nlast'"));
        QVERIFY(process);
        QByteArray line;
        const QList<QByteArray> expected{"one", "", "two", "last"};
        for (const QByteArray& want : expected) {
            QVERIFY(process->readLine(line, std::nullopt));
            QCOMPARE(line, want);
        }
        QVERIFY(!process->readLine(line, std::nullopt));
    }

    void theOnlyArgumentIsServe() {
        auto process = BridgeProcess::launch(script(QStringLiteral("args"), "echo \"$#:$1\"; echo oops >&2"));
        QByteArray line;
        QVERIFY(process->readLine(line, std::nullopt));
        QCOMPARE(line, QByteArray("1:--serve"));
        QVERIFY(!process->readLine(line, std::nullopt));
    }

    void aDeadlineEndsTheWait() {
        auto process = BridgeProcess::launch(script(QStringLiteral("silent"), "exec sleep 30"));
        QElapsedTimer timer;
        timer.start();
        QByteArray line;
        QVERIFY(!process->readLine(line, std::chrono::steady_clock::now() + std::chrono::milliseconds(150)));
        QVERIFY(timer.elapsed() >= 150);
        QVERIFY(process->running());
        process->terminate();
        QVERIFY(!process->running());
    }

    void writingToAChildThatStoppedReadingIsAnErrorNotASignal() {
        auto process = BridgeProcess::launch(script(QStringLiteral("deaf"), "exec 0<&-\nexec sleep 30"));
        QVERIFY(process);
        // Until the child has closed its end the pipe takes the bytes; after that every write fails.
        const QByteArray request(4096, 'x');
        QVERIFY(QTest::qWaitFor([&] { return !process->write(request); }, 10000));
        QVERIFY(!process->write("[]\n"));
        QVERIFY(process->running());
    }

    void aMissingProgramDoesNotStart() {
        QVERIFY(!BridgeProcess::launch(tree.path(QStringLiteral("nothing-here"))));
    }
};

ORVANE_TEST_MAIN(BridgeProcessTest)
#include "BridgeProcessTest.moc"
