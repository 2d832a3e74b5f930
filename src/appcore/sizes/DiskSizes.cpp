#include "appcore/sizes/DiskSizes.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "platform/TreeSize.h"

namespace sweeply {

std::uint64_t DiskSizes::charged(std::uint64_t size) const { return roundedUp(size, allocationBlock(units())); }

std::uint64_t DiskSizes::folderSizeAtPath(std::string_view path) const { return path.empty() ? 0 : sizeOfFile(path); }

std::uint64_t DiskSizes::sizeOfFile(std::string_view path) const {
    const auto attributes = m_fileManager.attributesOfItemAtPath(path, Links::DontFollow);
    if (attributes && attributes->type == FileType::Regular)
        return charged(attributes->size);
    auto folder = m_fileManager.openDirectory(path);
    return folder ? sizeOfTree(std::move(*folder), allocationBlock(units())) : 0;
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
