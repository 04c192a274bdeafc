#include "search/FolderWalk.h"
#include "platform/NativePath.h"

#include "platform/LinuxPlatform.h"
#include "search/SearchText.h"

#include <QFile>
#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace orvane {

namespace {
using Clock = std::chrono::steady_clock;

// The kernel's record from getdents64; readdir would copy each one once more.
struct KernelDirent {
    ino64_t inode;
    off64_t offset;
    unsigned short length;
    unsigned char type;
    char name[];
};

constexpr size_t direntBuffer = 64 * 1024;
// Folders below this depth go to the shared queue, so a thread never holds more descriptors.
constexpr int localDepth = 48;

class Descriptor {
public:
    explicit Descriptor(int fd) : fd(fd) {}
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd; }

private:
    int fd;
};

bool dotOrDotDot(const char* n) {
    return n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0));
}

std::string child(const std::string& folder, const char* name, size_t length) {
    std::string path;
    path.reserve(folder.size() + 1 + length);
    path += folder;
    if (path.empty() || path.back() != '/') path += '/';
    path.append(name, length);
    return path;
}

// The case-insensitive name test on raw bytes. Plain ASCII names, nearly all of them, are lowered
// into a buffer and searched bytewise; any other name, or a text outside ASCII, goes through QString.
class NameTest {
public:
    explicit NameTest(const QString& text) : text(text) {
        ascii = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
        if (ascii) lowered = text.toLatin1().toLower().toStdString();
    }

    bool operator()(const char* name, size_t length) const {
        if (!ascii || length > 255) return slow(name, length);
        char buffer[256];
        for (size_t i = 0; i < length; ++i) {
            const unsigned char c = static_cast<unsigned char>(name[i]);
            if (c >= 0x80) return slow(name, length);
            buffer[i] = char(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
        }
        return ::memmem(buffer, length, lowered.data(), lowered.size()) != nullptr;
    }

private:
    bool slow(const char* name, size_t length) const {
        return SearchText::containsIgnoringCase(NativePath::decode(QByteArray(name, qsizetype(length))),
                                                text);
    }

    QString text;
    std::string lowered;
    bool ascii = false;
};
} // namespace

struct FolderWalk::Walk {
    Walk(const QString& folder, const QString& text, bool hidden)
        : root(NativePath::encode(folder).toStdString()), test(text), hidden(hidden) {
        while (root.size() > 1 && root.back() == '/')
            root.pop_back();
    }

    // A folder waiting in the queue, opened from its parent's descriptor: its full path may be longer
    // than the system takes.
    struct Queued {
        std::shared_ptr<const Descriptor> parent; // none for the start
        std::string path;
        size_t nameAt = 0;
    };

    void worker();
    bool take(Queued& folder);
    void give(Queued folder);
    void enter(Queued& folder);
    void scan(int fd, const std::string& folder, int depth);
    bool cancelled() const { return generation->load(std::memory_order_relaxed) != token; }
    Entry entryFor(int fd, const std::string& folder, QString& folderText, const char* name, size_t length);
    void publish(std::vector<Entry>& found);

    std::string root;
    NameTest test;
    bool hidden;
    int threads = int(std::clamp(std::thread::hardware_concurrency(), 2u, 4u));
    const std::atomic<quint64>* generation = nullptr;
    quint64 token = 0;

    std::mutex queueMutex;
    std::condition_variable wake;
    std::deque<Queued> queue;
    int idle = 0;
    bool finished = false;
    // Idle threads beyond the folders already queued for them: a busy thread gives away work while
    // this is above 0.
    std::atomic<int> hungry{0};

    std::atomic<bool> unavailable{false};
    std::atomic<qint64> folders{0};
    std::atomic<qint64> matches{0};

    std::mutex outMutex;
    std::vector<Entry> all;
    std::vector<Entry> outbox;
    Batch batch;
    Clock::duration interval{};
    Clock::time_point lastBatch{};
    bool deliveredAny = false;
};

void FolderWalk::Walk::worker() {
    Queued folder;
    while (take(folder))
        enter(folder);
}

bool FolderWalk::Walk::take(Queued& folder) {
    std::unique_lock lock(queueMutex);
    for (;;) {
        if (cancelled()) queue.clear();
        if (!queue.empty()) {
            folder = std::move(queue.front());
            queue.pop_front();
            hungry = idle - int(queue.size());
            return true;
        }
        if (finished) return false;
        if (++idle == threads) {
            finished = true;
            wake.notify_all();
            return false;
        }
        hungry = idle - int(queue.size());
        wake.wait(lock, [this] { return !queue.empty() || finished; });
        --idle;
    }
}

void FolderWalk::Walk::give(Queued folder) {
    std::lock_guard lock(queueMutex);
    queue.push_back(std::move(folder));
    hungry = idle - int(queue.size());
    wake.notify_one();
}

void FolderWalk::Walk::enter(Queued& folder) {
    // The start may be a link to a folder; a folder met on the way is entered only as itself.
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    const Descriptor fd(folder.parent ? ::openat(folder.parent->get(), folder.path.c_str() + folder.nameAt,
                                                 flags | O_NOFOLLOW)
                                      : ::open(folder.path.c_str(), flags));
    folder.parent.reset(); // the parent closes once its last queued subfolder is open
    if (fd.get() < 0) {
        unavailable = true;
        return;
    }
    scan(fd.get(), folder.path, 0);
}

void FolderWalk::Walk::scan(int fd, const std::string& folder, int depth) {
    ++folders;
    thread_local std::unique_ptr<char[]> buffer(new char[direntBuffer]);
    std::vector<std::string> subfolders;
    std::vector<Entry> found;
    QString folderText;
    for (;;) {
        const long read = ::syscall(SYS_getdents64, fd, buffer.get(), direntBuffer);
        if (read <= 0) {
            if (read < 0) unavailable = true;
            break;
        }
        for (long at = 0; at < read;) {
            const auto* d = reinterpret_cast<const KernelDirent*>(buffer.get() + at);
            at += d->length;
            if (cancelled()) return;
            if (dotOrDotDot(d->name) || (d->name[0] == '.' && !hidden)) continue;
            const size_t length = std::strlen(d->name);
            bool isFolder = d->type == DT_DIR;
            struct stat status;
            if (d->type == DT_UNKNOWN && ::fstatat(fd, d->name, &status, AT_SYMLINK_NOFOLLOW) == 0)
                isFolder = S_ISDIR(status.st_mode);
            if (test(d->name, length)) found.push_back(entryFor(fd, folder, folderText, d->name, length));
            if (isFolder) subfolders.emplace_back(d->name, length);
        }
    }
    publish(found);
    std::shared_ptr<const Descriptor> shared; // this folder's, for the subfolders it gives away
    for (const std::string& name : subfolders) {
        if (cancelled()) return;
        if (depth >= localDepth || hungry.load(std::memory_order_relaxed) > 0) {
            if (!shared) shared = std::make_shared<const Descriptor>(::fcntl(fd, F_DUPFD_CLOEXEC, 0));
            if (shared->get() < 0) {
                unavailable = true;
                continue;
            }
            std::string path = child(folder, name.data(), name.size());
            const size_t nameAt = path.size() - name.size();
            give({shared, std::move(path), nameAt});
            continue;
        }
        const Descriptor sub(::openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (sub.get() < 0) {
            unavailable = true;
            continue;
        }
        scan(sub.get(), child(folder, name.data(), name.size()), depth + 1);
    }
}

Entry FolderWalk::Walk::entryFor(int fd, const std::string& folder, QString& folderText, const char* name,
                                 size_t length) {
    if (folderText.isEmpty())
        folderText = NativePath::decode(QByteArray(folder.data(), qsizetype(folder.size())));
    RawItem raw;
    raw.name = NativePath::decode(QByteArray(name, qsizetype(length)));
    raw.hidden = name[0] == '.';
    LinuxPlatform::readItemAt(fd, name, raw);
    return Entry::fromRaw(folderText, std::move(raw));
}

void FolderWalk::Walk::publish(std::vector<Entry>& found) {
    matches += qint64(found.size());
    std::lock_guard lock(outMutex);
    if (!batch) {
        std::move(found.begin(), found.end(), std::back_inserter(all));
        return;
    }
    all.insert(all.end(), found.begin(), found.end());
    std::move(found.begin(), found.end(), std::back_inserter(outbox));
    const Clock::time_point now = Clock::now();
    if ((deliveredAny || outbox.empty()) && now - lastBatch < interval) return;
    deliveredAny = deliveredAny || !outbox.empty();
    lastBatch = now;
    batch(std::exchange(outbox, {}), {folders.load(), matches.load()});
}

FolderWalk::FolderWalk(const QString& folder, const QString& text, bool hidden)
    : walk(std::make_unique<Walk>(folder, text, hidden)) {}

FolderWalk::~FolderWalk() = default;

void FolderWalk::setBatch(Batch batch, std::chrono::milliseconds interval) {
    walk->batch = std::move(batch);
    walk->interval = interval;
}

void FolderWalk::setThreads(int count) {
    walk->threads = std::max(1, count);
}

bool FolderWalk::run(const std::atomic<quint64>& generation, quint64 token) {
    walk->generation = &generation;
    walk->token = token;
    walk->lastBatch = Clock::now();
    walk->give({nullptr, walk->root, 0});
    std::vector<std::thread> helpers;
    for (int i = 1; i < walk->threads; ++i)
        helpers.emplace_back([this] { walk->worker(); });
    walk->worker();
    for (std::thread& helper : helpers)
        helper.join();
    return !walk->cancelled();
}

std::vector<Entry>& FolderWalk::results() {
    return walk->all;
}

bool FolderWalk::someUnavailable() const {
    return walk->unavailable;
}

FolderWalk::Progress FolderWalk::progress() const {
    return {walk->folders.load(), walk->matches.load()};
}

} // namespace orvane
