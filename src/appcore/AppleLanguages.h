#pragma once

#include <string>
#include <vector>

namespace sweeply {

class FileManager;
struct FolderConstants;

/// The languages that the target user prefers, as codes, the dearest first. Empty where the user's global preferences
/// do not say, or cannot be read.
[[nodiscard]] std::vector<std::string> appleLanguages(const FileManager& files, const FolderConstants& folders);

} // namespace sweeply
