#pragma once

#include "properties/PropertiesSizeSummary.h"

#include <QByteArray>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <sys/types.h>
#include <thread>
#include <utility>
#include <vector>

namespace orvane {

// Counts everything below a folder on two threads: the caller's and one helper that lives as long
// as the walk object. Folders are shared through one stack, so whichever thread is free takes the
// next; a folder is opened relative to its parent's descriptor and read with getdents64 and statx
// relative to its own, so no item costs more than one name lookup. Links are counted by their own
// size and never entered. Each file and folder counts once by device and inode, as du counts: a
// second hard link adds nothing, and a folder met again through a bind mount is not entered.
class PropertiesTreeWalk {
public:
    // A selected item that may lie inside the folder walked: reaching its exact path marks it.
    struct Mark {
        std::string path;
        dev_t device = 0;
        ino_t inode = 0;
        std::atomic<bool> reached{false};
        Mark(std::string p, dev_t d, ino_t i) : path(std::move(p)), device(d), inode(i) {}
    };

    // Asked before every item by the thread that counts it, `onCaller` telling which; true stops
    // the walk at once, on both threads.
    using Poll = std::function<bool(bool onCaller)>;

    explicit PropertiesTreeWalk(Poll poll);
    ~PropertiesTreeWalk();
    PropertiesTreeWalk(const PropertiesTreeWalk&) = delete;
    PropertiesTreeWalk& operator=(const PropertiesTreeWalk&) = delete;

    // Adds what lies below `folder` (not the folder itself) to the walk's counts; false when the
    // poll stopped it. `marks` must stay alive until it returns.
    bool walk(const QByteArray& folder, std::vector<std::unique_ptr<Mark>>* marks = nullptr);
    // Everything counted by all walks so far; safe to call from the poll while walking.
    PropertiesSizeSummary counted() const;
    // False when this file or folder was met before, by any walk of this object.
    bool firstSight(dev_t device, ino_t inode);

private:
    struct alignas(64) Counts {
        std::atomic<qint64> logical{0}, allocated{0}, files{0}, folders{0}, unreadable{0}, unavailable{0};
    };
    // An open folder that its subfolders are opened from; closed when the last of them is open.
    struct Handle {
        int fd;
        explicit Handle(int fd) : fd(fd) {}
        ~Handle();
    };
    struct Folder {
        std::shared_ptr<const Handle> parent; // none: opened by its path
        std::string path;
        size_t nameAt = 0; // where its own name starts in `path`
    };
    struct Worker {
        Counts counts;
        std::vector<char> buffer;
        std::vector<Folder> found;
    };

    void helperLoop();
    // Runs folders from the stack until the walk is done or stopped; `caller` polls at each item.
    void drain(Worker& me, bool caller);
    bool take(Folder& folder, bool caller);
    void finish(Worker& me);
    // Reads one folder; false when stopped half way.
    bool readFolder(Folder& folder, Worker& me, bool caller);
    int openFolder(Folder& folder);
    // Reads and counts one item; false when it could not be looked up.
    bool countItem(int dirfd, const char* name, const std::string& folder, Worker& me);
    // A folder known from its directory entry alone: its own size counts nothing.
    void countFolder(const char* name, const std::string& folder, Worker& me);
    void shareHandle(Worker& me, int fd, size_t from);
    bool stopNow(bool caller);

    Poll poll;
    Worker workers[2];
    std::vector<std::unique_ptr<Mark>>* marks = nullptr;

    std::mutex lock;
    std::condition_variable wake;
    std::vector<Folder> stack; // folders waiting to be read
    int active = 0;            // threads reading a folder now
    bool walking = false;
    bool quitting = false;
    std::atomic<bool> stopped{false};
    std::atomic<int> handles{0}; // descriptors kept open for subfolders
    std::mutex seenLock;
    std::set<std::pair<dev_t, ino_t>> seen; // folders, and files with more than one link
    std::thread helper;
};

} // namespace orvane
