#include "phone/BridgeProcess.h"

#include "platform/NativePath.h"

#include <QFile>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace orvane {

namespace {
bool makePipe(int fds[2]) {
#ifdef __linux__
    return ::pipe2(fds, O_CLOEXEC) == 0;
#else
    if (::pipe(fds) != 0) return false;
    ::fcntl(fds[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(fds[1], F_SETFD, FD_CLOEXEC);
    return true;
#endif
}

void closeAll(std::initializer_list<int> fds) {
    for (int fd : fds)
        if (fd >= 0) ::close(fd);
}

// The child starts with a clean signal state whatever this thread has blocked.
int spawn(pid_t& pid, const QByteArray& path, int childInput, int childOutput) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childInput, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childOutput, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    QByteArray program = path;
    QByteArray serve("--serve");
    char* argv[] = {program.data(), serve.data(), nullptr};
    const int status = ::posix_spawn(&pid, program.constData(), &actions, &attributes, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return status;
}
} // namespace

std::unique_ptr<BridgeProcess> BridgeProcess::launch(const QString& executable) {
    int toChild[2] = {-1, -1}, fromChild[2] = {-1, -1};
    if (!makePipe(toChild) || !makePipe(fromChild)) {
        closeAll({toChild[0], toChild[1], fromChild[0], fromChild[1]});
        return nullptr;
    }
#ifdef F_SETNOSIGPIPE
    ::fcntl(toChild[1], F_SETNOSIGPIPE, 1);
#endif
    pid_t pid = -1;
    const int status = spawn(pid, NativePath::encode(executable), toChild[0], fromChild[1]);
    closeAll({toChild[0], fromChild[1]});
    if (status != 0) {
        closeAll({toChild[1], fromChild[0]});
        return nullptr;
    }
    return std::unique_ptr<BridgeProcess>(new BridgeProcess(pid, toChild[1], fromChild[0]));
}

BridgeProcess::BridgeProcess(pid_t pid, int input, int output) : pid(pid), input(input), output(output) {}

BridgeProcess::~BridgeProcess() {
    terminate();
    closeAll({input, output});
}

bool BridgeProcess::running() {
    if (!reaped && ::waitpid(pid, nullptr, WNOHANG) == pid) reaped = true;
    return !reaped;
}

// SIGPIPE is blocked around the write and a pending one is taken back, so a dead reader shows
// only as EPIPE, whatever handlers the application has.
bool BridgeProcess::write(const QByteArray& data) {
    sigset_t pipeSignal, previous;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipeSignal, &previous);
    const char* p = data.constData();
    qsizetype left = data.size();
    bool ok = true;
    while (left > 0 && ok) {
        const ssize_t n = ::write(input, p, size_t(left));
        if (n < 0 && errno == EINTR) continue;
        ok = n > 0;
        p += ok ? n : 0;
        left -= ok ? n : 0;
    }
#ifdef __linux__
    if (!ok && errno == EPIPE && !sigismember(&previous, SIGPIPE)) {
        const timespec immediately{0, 0};
        while (::sigtimedwait(&pipeSignal, nullptr, &immediately) == SIGPIPE) {
        }
    }
#endif
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    return ok;
}

// Reads what the pipe has, without blocking past the deadline. False at end of file or error.
bool BridgeProcess::fill(Deadline deadline) {
    for (;;) {
        int wait = -1;
        if (deadline) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0) return false;
            wait = int(std::min<long long>(left.count(), 1 << 30));
        }
        pollfd ready{output, POLLIN, 0};
        const int polled = ::poll(&ready, 1, wait);
        if (polled < 0 && errno == EINTR) continue;
        if (polled <= 0) return false;
        char chunk[65536];
        const ssize_t n = ::read(output, chunk, sizeof chunk);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        buffer.append(chunk, n);
        return true;
    }
}

// Kept per child, the buffer splits lines exactly as reading one byte at a time would.
bool BridgeProcess::readLine(QByteArray& line, Deadline deadline) {
    qsizetype end;
    while ((end = buffer.indexOf('\n', scanned)) < 0) {
        scanned = buffer.size();
        if (!fill(deadline)) {
            const bool timedOut = deadline && std::chrono::steady_clock::now() >= *deadline;
            if (timedOut || buffer.isEmpty()) return false;
            line = std::exchange(buffer, QByteArray());
            scanned = 0;
            return true;
        }
    }
    line = buffer.left(end);
    buffer.remove(0, end + 1);
    scanned = 0;
    return true;
}

void BridgeProcess::terminate() {
    if (!running()) return;
    ::kill(pid, SIGTERM);
    for (int waited = 0; waited < 2000; ++waited) {
        if (::waitpid(pid, nullptr, WNOHANG) == pid) {
            reaped = true;
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    reaped = true;
}

} // namespace orvane
