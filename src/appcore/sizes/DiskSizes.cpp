#include "appcore/sizes/DiskSizes.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "platform/TreeSize.h"
#include "platform/UniqueFd.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace sweeply {

std::uint64_t DiskSizes::charged(std::uint64_t size) const { return roundedUp(size, allocationBlock(units())); }

std::uint64_t DiskSizes::folderSizeAtPath(std::string_view path) const { return path.empty() ? 0 : sizeOfFile(path); }

std::uint64_t DiskSizes::sizeOfFile(std::string_view path) const {
    if (normalisedPath(path) == "/") {
        auto root = m_fileManager.openDirectory(path);
        return root ? sizeOfTree(std::move(*root), allocationBlock(units())) : 0;
    }
    const auto item = m_fileManager.locate(path);
    return item ? sizeOfEntry(item->parent.get(), item->name) : 0;
}

std::uint64_t DiskSizes::sizeOfEntry(int folder, const std::string& name) const {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return 0;
    return S_ISREG(status.st_mode) ? charged(static_cast<std::uint64_t>(status.st_size))
                                   : sizeOfFolderEntry(folder, name);
}

std::uint64_t DiskSizes::sizeOfFolderEntry(int folder, const std::string& name) const {
    UniqueFd opened(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return opened ? sizeOfTree(std::move(opened), allocationBlock(units())) : 0;
}

std::uint64_t DiskSizes::sizeOfAllFilesAtPathes(std::span<const std::string> paths) const {
    std::uint64_t total = 0;
    for (const std::string& path : paths)
        total += folderSizeAtPath(path);
    return total;
}

std::uint64_t DiskSizes::slowFolderSizeAtPath(std::string_view path) const {
    if (path.empty() || !m_fileManager.fileExistsAtPath(path))
        return 0;
    if (!m_fileManager.directoryExistsAtPath(path)) {
        const auto attributes = m_fileManager.attributesOfItemAtPath(path, Links::DontFollow);
        return attributes ? charged(attributes->size) : 0;
    }
    std::uint64_t total = 0;
    auto enumerator = m_fileManager.enumeratorAtPath(path);
    while (const auto entry = enumerator.next()) {
        if (entry->type == FileType::Directory)
            continue;
        if (entry->type == FileType::SymbolicLink) {
            const auto target = m_fileManager.attributesOfItemAtPath(joinedPath(path, entry->path), Links::Follow);
            if (!target || target->type == FileType::Directory)
                continue;
        }
        if (const auto attributes = enumerator.attributes())
            total += charged(attributes->size);
    }
    return total;
}

} // namespace sweeply
