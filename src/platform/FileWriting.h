#pragma once

#include "platform/Error.h"
#include "platform/TargetRoot.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace sweeply {

class SystemCalls;

// Making and replacing single items of an open folder. What root makes belongs to the folder's owner. Errors name
// `path`, the item's path as the caller knows it. Any number of threads may call these at once.

/// Makes a folder. An item that is there already is AlreadyExists.
Result<void> makeFolder(SystemCalls& calls, const LocatedItem& item, mode_t mode, std::string_view path);

/// Makes a file that is not synced. An item that is there already is AlreadyExists.
Result<void> makeFile(SystemCalls& calls, const LocatedItem& item, std::string_view contents, mode_t mode,
                      std::string_view path);

/// Gives the file new contents or leaves the old one whole: writes them beside it, syncs, renames. An existing file's
/// mode and owner are kept; a link is replaced, not written through.
Result<void> replaceContents(SystemCalls& calls, LocatedItem item, std::string_view contents, mode_t mode,
                             std::string_view path);

/// Renames the file `replacement` of the item's folder over the item and has that on the disk before it returns. A
/// replacement that cannot take the item's place is removed.
Result<void> renameOver(SystemCalls& calls, const LocatedItem& item, const std::string& replacement,
                        std::string_view path);

/// All of the contents, where the descriptor stands.
Result<void> writeAll(SystemCalls& calls, int fd, std::string_view contents, std::string_view path);

/// What root makes in somebody's folder belongs to that somebody: a preferences file that its user cannot write again
/// would be lost to them.
void giveToOwnerOf(SystemCalls& calls, int folder, int fd);

} // namespace sweeply
