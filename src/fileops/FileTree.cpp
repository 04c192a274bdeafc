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

bool removeAt(int dir, const char* name, int& code) {
    struct stat st;
    if (fstatat(dir, name, &st, AT_SYMLINK_NOFOLLOW) != 0) return code = errno, false;
    if (S_ISDIR(st.st_mode)) {
        const int sub = openat(dir, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        DIR* listing = sub >= 0 ? fdopendir(sub) : nullptr;
        if (!listing) {
            code = errno;
            if (sub >= 0) close(sub);
            return false;
        }
        std::vector<std::string> names;
        while (dirent* d = readdir(listing))
            if (std::strcmp(d->d_name, ".") != 0 && std::strcmp(d->d_name, "..") != 0)
                names.emplace_back(d->d_name);
        bool ok = true;
        for (const std::string& n : names)
            if (!(ok = removeAt(dirfd(listing), n.c_str(), code))) break;
        closedir(listing);
        if (!ok) return false;
    }
    if (unlinkat(dir, name, S_ISDIR(st.st_mode) ? AT_REMOVEDIR : 0) != 0) return code = errno, false;
    return true;
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
