#pragma once

#include "platform/Error.h"
#include "platform/TargetRoot.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace sweeply {

// Making and replacing single items of an open folder. What root makes belongs to the folder's owner. Errors name
// `path`, the item's path as the caller knows it. Any number of threads may call these at once.

/// Makes a folder. An item that is there already is AlreadyExists.
Result<void> makeFolder(const LocatedItem& item, mode_t mode, std::string_view path);

/// Makes a file that is not synced. An item that is there already is AlreadyExists.
Result<void> makeFile(const LocatedItem& item, std::string_view contents, mode_t mode, std::string_view path);

/// Gives the file new contents or leaves the old one whole: writes them beside it, syncs, renames. An existing file's
/// mode and owner are kept; a link is replaced, not written through.
Result<void> replaceContents(const LocatedItem& item, std::string_view contents, mode_t mode, std::string_view path);

/// Renames the file `replacement` of the item's folder over the item and has that on the disk before it returns.
Result<void> renameOver(const LocatedItem& item, const std::string& replacement, std::string_view path);

} // namespace sweeply
