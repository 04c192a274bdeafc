#include "platform/VolumeFigures.h"

#include "platform/NativePath.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <sys/statvfs.h>
#include <thread>

namespace orvane {

namespace {
// Shared with the threads, which may outlive the caller when a mount hangs.
struct Answers {
    std::mutex lock;
    std::condition_variable done;
    std::vector<std::optional<VolumeFigures>> figures;
    size_t pending = 0;
};

std::optional<VolumeFigures> ask(const QByteArray& path) {
    struct statvfs s {};
    if (statvfs(path.constData(), &s) != 0) return VolumeFigures{0, 0, 0, true};
    const qint64 unit = qint64(s.f_frsize ? s.f_frsize : s.f_bsize);
    return VolumeFigures{qint64(s.f_blocks) * unit, qint64(s.f_bavail) * unit,
                         (qint64(s.f_blocks) - qint64(s.f_bfree)) * unit};
}
} // namespace

// A volume whose question outlived its read is not asked again until that question ends, so a
// hung mount holds one thread however often the list is read.
std::vector<std::optional<VolumeFigures>> VolumeFigures::read(const std::vector<QString>& paths, int waitMs) {
    static std::mutex stuckLock;
    static std::set<QByteArray> stuck;
    auto answers = std::make_shared<Answers>();
    answers->figures.resize(paths.size());
    std::vector<bool> asked(paths.size());
    for (size_t i = 0; i < paths.size(); ++i) {
        const QByteArray path = NativePath::encode(paths[i]);
        {
            const std::lock_guard<std::mutex> hold(stuckLock);
            if (stuck.count(path)) continue;
        }
        asked[i] = true;
        const std::lock_guard<std::mutex> hold(answers->lock);
        ++answers->pending;
        std::thread([answers, i, path] {
            const std::optional<VolumeFigures> figures = ask(path);
            {
                const std::lock_guard<std::mutex> hold(answers->lock);
                answers->figures[i] = figures;
                if (--answers->pending == 0) answers->done.notify_all();
            }
            // After the answer: a read that gave up marks the path while it holds the answers.
            const std::lock_guard<std::mutex> release(stuckLock);
            stuck.erase(path);
        }).detach();
    }
    std::unique_lock<std::mutex> hold(answers->lock);
    answers->done.wait_for(hold, std::chrono::milliseconds(waitMs), [&] { return answers->pending == 0; });
    const std::lock_guard<std::mutex> mark(stuckLock);
    for (size_t i = 0; i < paths.size(); ++i)
        if (asked[i] && !answers->figures[i]) stuck.insert(NativePath::encode(paths[i]));
    return answers->figures;
}

} // namespace orvane
