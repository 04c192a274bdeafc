#pragma once

#include <sys/stat.h>

namespace orvane {

// What a copy keeps beside the bytes, each part where the destination can hold it: FAT holds no modes,
// some file systems no extended attributes, and none of that is a reason to refuse the data.
class FileMetadata {
public:
    // From the source open at `in` onto the copy open at `out`: the owner when `owner` is set and the
    // process may, user extended attributes, ACLs, the mode and the times. The mode never grants more than
    // the source did: where its ACL cannot follow, the group keeps only what the ACL let it have.
    static void copy(int in, int out, const struct stat& st, bool owner);
    // An item that cannot be opened (a link, a pipe): owner, mode where it has one, and times.
    static void copyAt(int dir, const char* name, const struct stat& st, bool owner);
};

} // namespace orvane
