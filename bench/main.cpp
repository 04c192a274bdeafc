#include "BenchCommand.h"

#include "platform/NativePath.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace {
QList<BenchCommand>& commands() {
    static QList<BenchCommand> list;
    return list;
}
} // namespace

int registerBenchCommand(const BenchCommand& command) {
    commands().append(command);
    return int(commands().size());
}

QTextStream& benchOut() {
    static QTextStream out(stdout);
    return out;
}

qint64 residentBytes() {
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    const QList<QByteArray> fields = status.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * 4096 : 0;
}

double timeShell(const QString& command) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
    if (!process.waitForFinished(-1) || process.exitCode() != 0) return -1;
    return double(timer.nsecsElapsed()) / 1e6;
}

int main(int argc, char** argv) {
    // Only these need widgets; the others must run where there is no display.
    const bool widgets =
        argc > 1 && (qstrcmp(argv[1], "table-scroll") == 0 || qstrcmp(argv[1], "refresh-one") == 0 ||
                     qstrcmp(argv[1], "icon-paint") == 0 || qstrcmp(argv[1], "phone-list") == 0 ||
                     qstrcmp(argv[1], "audio-start") == 0 || qstrcmp(argv[1], "thumbnails-pass") == 0);
    if (widgets && qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> app =
        widgets ? std::make_unique<QApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    // From the bytes themselves: Qt's own argument list would turn a path that is not UTF-8 into another.
    QStringList args;
    for (int i = 2; i < argc; ++i)
        args << orvane::NativePath::decode(argv[i]);
    const QString name = argc > 1 ? QString::fromUtf8(argv[1]) : QString();
    for (const BenchCommand& command : commands())
        if (command.name == name) return command.run(args);
    QTextStream err(stderr);
    err << "usage:\n";
    for (const BenchCommand& command : commands())
        err << "  orvane-bench " << command.name << ' ' << command.usage << '\n';
    return 2;
}
