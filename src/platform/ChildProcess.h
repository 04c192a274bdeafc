#pragma once

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QString>
#include <sys/types.h>

namespace orvane {

// A child program whose arguments and working folder are exact bytes: QProcess takes text, and a name
// with byte 0xFF would reach the child as the bytes of U+FFFD. Standard output goes to the null device,
// standard error is kept for the message.
class ChildProcess {
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    // `program` is looked up on PATH when it holds no slash. Answers false with the system's text.
    bool start(const QByteArray& program, const QList<QByteArray>& arguments, const QByteArray& folder,
               QString& error);
    // Reads standard error to its end, then waits: the exit status, or 128 + signal when killed.
    int wait(QByteArray& errorText);
    // From any thread: asks the child to end; wait() then returns.
    void terminate();
    // Whether `program` can be found (absolute, or on PATH).
    static bool available(const QByteArray& program);

private:
    QMutex lock;
    pid_t pid = -1;
    int errorPipe = -1;
};

} // namespace orvane
