#include "appcore/sizes/DiskSizes.h"

#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/FileStatus.h"
#include "platform/TargetPath.h"
#include "platform/TreeSize.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace sweeply {

std::uint64_t DiskSizes::charged(std::uint64_t size) const { return roundedUp(size, allocationBlock(units())); }

MeasuredItem DiskSizes::measure(std::string_view path, const FolderMet& met, const std::stop_token& stop) const {
    if (path.empty())
        return {};
    if (normalisedPath(path) == "/") {
        auto root = m_fileManager.openDirectory(path);
        auto item = root ? measureTree(std::move(*root), allocationBlock(units()), met, stop) : MeasuredItem();
        if (!item.isWhole && !stop.stop_requested())
            tellWhatIsMissing("/");
        return item;
    }
    const auto item = m_fileManager.locate(path);
    if (item)
        return measureItem(item->parent.get(), item->name.c_str(), std::string(path), met, stop);
    m_fileManager.addUnreadable(item.error());
    return {};
}

MeasuredItem DiskSizes::measureEntry(int folder, const std::string& path) const {
    return measureItem(folder, path.c_str() + path.rfind('/') + 1, path);
}

MeasuredItem DiskSizes::measureFile(const FileAttributes& attributes) const {
    MeasuredItem item;
    if (attributes.type == FileType::Regular)
        item.size = charged(attributes.size);
    // Without its name: nobody says by which path it is reached.
    item.identity.addEntry({}, attributes.size, attributes.modified);
    item.identity.kind = itemKindOf(attributes.type);
    return item;
}

MeasuredItem DiskSizes::measureItem(int folder, const char* name, const std::string& path, const FolderMet& met,
                                    const std::stop_token& stop) const {
    struct stat status {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return unreadable(errno, path);
    if (S_ISDIR(status.st_mode))
        return measureFolder(folder, name, path, met, stop);
    return measureFile(attributesFrom(status));
}

MeasuredItem DiskSizes::measureFolder(int folder, const char* name, const std::string& path, const FolderMet& met,
                                      const std::stop_token& stop) const {
    UniqueFd opened(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const int errorNumber = errno;
    MeasuredItem item;
    if (opened) {
        item = measureTree(std::move(opened), allocationBlock(units()), met, stop);
        if (!item.isWhole && !stop.stop_requested())
            tellWhatIsMissing(path);
    } else {
        item = unreadable(errorNumber, path);
        if (errorNumber != EACCES && errorNumber != EPERM)
            return item;
    } // what is in a closed folder nobody can tell, but it is there
    item.identity.addEntry({});
    item.identity.kind = ItemKind::Folder;
    return item;
}

MeasuredItem DiskSizes::unreadable(int errorNumber, std::string_view path) const {
    MeasuredItem nothing;
    if (errorNumber != ENOENT && errorNumber != ENOTDIR && errorNumber != ELOOP) {
        nothing.isWhole = false;
        m_fileManager.addUnreadable(systemError(errorNumber, path));
    }
    return nothing;
}

void DiskSizes::tellWhatIsMissing(const std::string& path) const {
    auto walk = m_fileManager.enumeratorAtPath(path);
    bool isFound = false;
    while (const auto entry = walk.next()) {
        if (entry->type != FileType::Directory)
            isFound |= !walk.attributes();
    }
    if (!isFound && !walk.failure())
        m_fileManager.problems().add({ErrorKind::Other, path, "a part of it could not be read"});
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
