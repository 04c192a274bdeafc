#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <memory>
#include <optional>
#include <sys/types.h>

namespace orvane {

// One running bridge child: its standard input and output are pipes, its standard error the null
// device. Used from one thread at a time.
class BridgeProcess {
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    // Absent when the executable can't be started.
    static std::unique_ptr<BridgeProcess> launch(const QString& executable);
    ~BridgeProcess();
    BridgeProcess(const BridgeProcess&) = delete;
    BridgeProcess& operator=(const BridgeProcess&) = delete;

    bool running();
    // A child that has gone away gives false here, never a broken-pipe signal.
    bool write(const QByteArray& data);
    // The next line without its 0x0A; end of file ends a last line without one. False on a read
    // error, at end of file with nothing left, and when `deadline` passes first.
    bool readLine(QByteArray& line, Deadline deadline);
    // Asks the child to end, then makes sure it has, and reaps it.
    void terminate();

private:
    BridgeProcess(pid_t pid, int input, int output);
    bool fill(Deadline deadline);

    pid_t pid;
    int input;
    int output;
    bool reaped = false;
    QByteArray buffer;
    qsizetype scanned = 0;
};

} // namespace orvane
