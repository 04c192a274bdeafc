#include "platform/ChildProcess.h"

#include <QMutexLocker>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace orvane {

ChildProcess::~ChildProcess() {
    if (pid > 0) {
        terminate();
        QByteArray ignored;
        wait(ignored);
    }
}

bool ChildProcess::start(const QByteArray& program, const QList<QByteArray>& arguments,
                         const QByteArray& folder, QString& error) {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) {
        error = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, fds[1], 2);
    if (!folder.isEmpty()) posix_spawn_file_actions_addchdir_np(&actions, folder.constData());
    std::vector<char*> argv;
    QByteArray name = program;
    argv.push_back(name.data());
    QList<QByteArray> kept = arguments;
    for (QByteArray& a : kept)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t child = -1;
    const int failed = posix_spawnp(&child, name.constData(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(fds[1]);
    if (failed != 0) {
        ::close(fds[0]);
        error = QString::fromLocal8Bit(std::strerror(failed));
        return false;
    }
    QMutexLocker guard(&lock);
    pid = child;
    errorPipe = fds[0];
    return true;
}

int ChildProcess::wait(QByteArray& errorText) {
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(errorPipe, buffer, sizeof buffer);
        if (n > 0) {
            if (errorText.size() < (1 << 16)) errorText.append(buffer, n);
        } else if (n == 0 || errno != EINTR) {
            break;
        }
    }
    ::close(errorPipe);
    errorPipe = -1;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    QMutexLocker guard(&lock);
    pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Under the lock so that a child already reaped is never signalled by a reused id.
void ChildProcess::terminate() {
    QMutexLocker guard(&lock);
    if (pid > 0) ::kill(pid, SIGTERM);
}

bool ChildProcess::available(const QByteArray& program) {
    if (program.contains('/')) return ::access(program.constData(), X_OK) == 0;
    const QByteArray path = qgetenv("PATH");
    for (const QByteArray& folder : path.split(':'))
        if (!folder.isEmpty() && ::access((folder + '/' + program).constData(), X_OK) == 0) return true;
    return false;
}

} // namespace orvane
