#include "appcore/sizes/DiskSizes.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "platform/TreeSize.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace sweeply {

std::uint64_t DiskSizes::charged(std::uint64_t size) const { return roundedUp(size, allocationBlock(units())); }

MeasuredItem DiskSizes::measure(std::string_view path) const {
    if (path.empty())
        return {};
    if (normalisedPath(path) == "/") {
        auto root = m_fileManager.openDirectory(path);
        return root ? measureTree(std::move(*root), allocationBlock(units())) : MeasuredItem();
    }
    const auto item = m_fileManager.locate(path);
    return item ? measureEntry(item->parent.get(), item->name) : MeasuredItem();
}

MeasuredItem DiskSizes::measureEntry(int folder, const std::string& name) const {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    if (S_ISDIR(status.st_mode))
        return measureFolderEntry(folder, name);
    MeasuredItem item;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (S_ISREG(status.st_mode))
        item.size = charged(size);
    // Without its name: nobody says by which path it is reached.
    item.identity.addEntry({}, size, status.st_mtim);
    item.identity.kind = itemKindOf(status.st_mode);
    return item;
}

MeasuredItem DiskSizes::measureFolderEntry(int folder, const std::string& name) const {
    UniqueFd opened(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const bool isThere = opened || errno == EACCES || errno == EPERM; // and what is in it nobody can tell
    auto item = opened ? measureTree(std::move(opened), allocationBlock(units())) : MeasuredItem();
    if (isThere) {
        item.identity.addEntry({});
        item.identity.kind = ItemKind::Folder;
    }
    return item;
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
