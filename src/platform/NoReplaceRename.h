#pragma once

namespace orvane {

// Renames `from` to `to` and fails with EEXIST when anything is at `to`, decided by the kernel in the
// same call, so an item that appears between a check and the rename is never replaced.
// Where the file system lacks that (FAT, exFAT), a file claims its name with an exclusive create first and
// is renamed over its own placeholder, so an existing item is still never replaced.
// Answers 0 or the errno value; EXDEV tells the caller to copy instead.
int renameNoReplace(const char* from, const char* to);
// The same with names relative to open folders (AT_FDCWD for the working folder).
int renameNoReplaceAt(int fromFolder, const char* from, int toFolder, const char* to);

} // namespace orvane
