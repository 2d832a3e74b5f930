#pragma once

#include <string>

namespace sweeply {

class FileManager;
struct FolderConstants;

/// The folder that Mac OS X 10.5 and later give the target user for temporary caches, as a target path; empty when
/// there is none or it cannot be told whose is whose.
///
/// On the Mac itself the system says. In another root it is the one "-Caches-" folder below "/private/var/folders" that
/// belongs to the owner of the home folder.
[[nodiscard]] std::string userCacheDirectory(const FileManager& files, const FolderConstants& folders);

} // namespace sweeply
