#include "fileops/FileTree.h"

#include "fileops/TreeCopy.h"
#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {

bool isDots(const char* n) {
    return n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0));
}

// One folder being emptied, and its name in the folder below it on the stack.
struct Emptying {
    DIR* listing;
    std::string name;
};

// Removes a file or a link at once; a folder is opened and goes on the stack to be emptied first.
bool removeOrOpen(int at, const std::string& name, std::vector<Emptying>& stack, int& code) {
    struct stat st;
    if (fstatat(at, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) return code = errno, false;
    if (!S_ISDIR(st.st_mode)) return unlinkat(at, name.c_str(), 0) == 0 || (code = errno, false);
    const int sub = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR* listing = sub >= 0 ? fdopendir(sub) : nullptr;
    if (!listing) {
        code = errno;
        if (sub >= 0) close(sub);
        return false;
    }
    stack.push_back({listing, name});
    return true;
}

// Finds the next item of the innermost folder, removing each folder left empty on the way back.
bool advance(std::vector<Emptying>& stack, int top, int& at, std::string& next, int& code) {
    while (!stack.empty()) {
        const dirent* d = readdir(stack.back().listing);
        while (d && isDots(d->d_name))
            d = readdir(stack.back().listing);
        if (d) {
            at = dirfd(stack.back().listing);
            next = d->d_name;
            return true;
        }
        const Emptying done = stack.back();
        stack.pop_back();
        closedir(done.listing);
        const int parent = stack.empty() ? top : dirfd(stack.back().listing);
        if (unlinkat(parent, done.name.c_str(), AT_REMOVEDIR) != 0) return code = errno, false;
    }
    return true;
}

// The open folders wait on a stack of their own, so no depth of tree can overflow the thread's.
bool removeAt(int dir, const char* name, int& code) {
    std::vector<Emptying> stack;
    std::string next = name;
    bool ok = true;
    for (int at = dir; ok;) {
        ok = removeOrOpen(at, next, stack, code) && advance(stack, dir, at, next, code);
        if (stack.empty()) break;
    }
    for (const Emptying& level : stack)
        closedir(level.listing);
    return ok;
}

FileTree::Outcome outcomeOf(const TreeCopy& copy, bool arrived) {
    FileTree::Outcome outcome;
    outcome.arrived = arrived;
    for (const TreeCopy::Problem& p : copy.problems)
        outcome.problems.push_back({NativePath::display(NativePath::decode(p.where.c_str())), p.text});
    return outcome;
}

QString detail(const FileTree::Outcome& outcome) {
    QStringList lines;
    for (const FileTree::Problem& p : outcome.problems)
        lines << (p.where.isEmpty() ? p.text : p.where + QStringLiteral(": ") + p.text);
    return lines.join(u'\n');
}

} // namespace

QStringList FileTree::Outcome::lines(const QString& name) const {
    QStringList list;
    for (const Problem& p : problems)
        list << (p.where.isEmpty() ? name : name + u'/' + p.where) + QStringLiteral(": ") + p.text;
    return list;
}

QString FileTree::systemText(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

FileTree::Outcome FileTree::copyItem(const QString& source, const QString& destination) {
    TreeCopy copy(false);
    const bool arrived = copy.run(NativePath::encode(source), NativePath::encode(destination));
    return outcomeOf(copy, arrived);
}

QString FileTree::placeNumbered(const QByteArray& from, const QString& folder,
                                const std::function<QString(int)>& candidate, QString& error) {
    for (int n = 1;; ++n) {
        const QString target = folder + u'/' + candidate(n);
        struct stat seen;
        if (::lstat(NativePath::encode(target).constData(), &seen) == 0) continue;
        const int failed = renameNoReplace(from.constData(), NativePath::encode(target).constData());
        if (failed == 0) return target;
        if (failed != EEXIST) {
            error = systemText(failed);
            return {};
        }
    }
}

FileTree::Outcome FileTree::moveItem(const QString& source, const QString& destination) {
    const QByteArray from = NativePath::encode(source);
    const int code = renameNoReplace(from.constData(), NativePath::encode(destination).constData());
    Outcome outcome;
    outcome.arrived = code == 0;
    if (code != 0 && code != EXDEV) outcome.problems.push_back({{}, systemText(code)});
    if (code != EXDEV) return outcome;
    TreeCopy copy(true);
    const bool arrived = copy.run(from, NativePath::encode(destination));
    if (arrived) copy.removeCopied(from);
    return outcomeOf(copy, arrived);
}

bool FileTree::copy(const QString& source, const QString& destination, QString& error) {
    const Outcome outcome = copyItem(source, destination);
    error = detail(outcome);
    return outcome.ok();
}

bool FileTree::move(const QString& source, const QString& destination, QString& error) {
    const Outcome outcome = moveItem(source, destination);
    error = detail(outcome);
    return outcome.ok();
}

bool FileTree::remove(const QString& path, QString& error) {
    int code = 0;
    if (removeAt(AT_FDCWD, NativePath::encode(path).constData(), code)) return true;
    error = systemText(code);
    return false;
}

} // namespace orvane
