#pragma once

#include "platform/Error.h"

#include <string>
#include <vector>

namespace sweeply {

class FileManager;
struct FolderConstants;

/// The languages that the target user prefers, as the system stores them, the dearest first: from his own global
/// preferences or else from those of all users, or just English where neither tells. An error where preferences are
/// there and cannot be read.
[[nodiscard]] Result<std::vector<std::string>> appleLanguages(const FileManager& files, const FolderConstants& folders);

} // namespace sweeply
