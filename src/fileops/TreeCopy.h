#pragma once

#include "fileops/FileData.h"

#include <QByteArray>
#include <QString>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace orvane {

// One copy of one item, a whole folder tree included, with the system calls themselves so that "never
// overwrite" is decided by the kernel: files are created with O_EXCL, folders with mkdir and links with
// symlink. An item inside a folder that cannot be copied (unreadable, a socket, too deep, the copy itself
// seen through a bind mount) is noted and the rest goes on; a file that fails half way is removed again.
// Hard links within the tree stay links.
// A move's copy also keeps owners where the process may, and notes what it copied so that exactly that,
// and nothing that appeared meanwhile, is removed from the source afterwards.
class TreeCopy {
public:
    struct Problem {
        std::string where; // below the top, empty for the top itself
        QString text;
    };

    explicit TreeCopy(bool move) : move(move) {}
    // Copies `from` to `to`, which must not exist. Answers whether the top arrived, whole or in part.
    bool run(const QByteArray& from, const QByteArray& to);
    // For a move, once `run` has arrived: removes from `from` what was copied, item by item, leaving
    // anything that appeared or changed since it was copied.
    void removeCopied(const QByteArray& from);

    std::vector<Problem> problems;

private:
    struct Copied {
        std::string where;
        struct stat st;
    };

    bool item(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
              const std::string& rel);
    struct Level;
    bool folder(int srcDir, const char* srcName, int dstDir, const char* dstName, const std::string& rel);
    std::unique_ptr<Level> enter(int srcDir, const char* srcName, int dstDir, const char* dstName,
                                 const std::string& rel);
    bool file(int srcDir, const char* srcName, int dstDir, const char* dstName, const std::string& rel);
    bool link(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
              const std::string& rel);
    bool linkAgain(const struct stat& st, int dstDir, const char* dstName, const std::string& rel);
    bool fail(const std::string& rel, int code, const QString& note = {});
    void discard(int dstDir, const char* dstName, const std::string& rel, int code);
    void arrived(const std::string& rel, const struct stat& st);
    void leftovers(const QByteArray& folder, const std::string& rel);
    QByteArray destinationOf(const std::string& rel) const;

    const bool move;
    QByteArray destination;
    FileData data;
    std::vector<Copied> manifest;  // in the order the copy finished them: a folder after its contents
    std::set<std::string> visited; // every item the copy met, copied or not
    std::map<std::pair<dev_t, ino_t>, std::string> linked; // the first copy of each multiply linked file
    std::pair<dev_t, ino_t> copyTop{0, 0};                 // the top folder of the copy, once made
};

} // namespace orvane
