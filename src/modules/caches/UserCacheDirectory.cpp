#include "modules/caches/UserCacheDirectory.h"

#include "appcore/FolderConstants.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <array>
#include <unistd.h>

namespace sweeply {

std::string userCacheDirectory(const FileManager& files, const FolderConstants& folders) {
#ifdef _CS_DARWIN_USER_CACHE_DIR
    if (files.isHostRoot()) {
        std::array<char, 1024> buffer;
        const std::size_t length = ::confstr(_CS_DARWIN_USER_CACHE_DIR, buffer.data(), buffer.size());
        return length == 0 ? std::string() : std::string(buffer.data(), length - 1);
    }
#endif
    constexpr std::string_view kFolders = "/private/var/folders";
    constexpr int kLevelOfCaches = 2; // "zz/zyxvpxvq6csfxvn_n0/-Caches-"
    const auto home = files.attributesOfItemAtPath(folders.home, Links::Follow);
    if (!home)
        return {};
    std::string found;
    auto walk = files.enumeratorAtPath(kFolders);
    while (const auto entry = walk.next()) {
        if (entry->level < kLevelOfCaches)
            continue;
        walk.skipDescendants();
        if (entry->type != FileType::Directory || lastPathComponent(entry->path) != "-Caches-")
            continue;
        const auto attributes = walk.attributes();
        if (!attributes || attributes->owner != home->owner)
            continue;
        if (!found.empty())
            return {};
        found = joinedPath(kFolders, entry->path);
    }
    return found;
}

} // namespace sweeply
