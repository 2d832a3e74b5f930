#include "platform/FileStatus.h"

namespace sweeply {

FileType fileTypeOf(mode_t mode) {
    if (S_ISREG(mode))
        return FileType::Regular;
    if (S_ISDIR(mode))
        return FileType::Directory;
    if (S_ISLNK(mode))
        return FileType::SymbolicLink;
    return FileType::Other;
}

FileAttributes attributesFrom(const struct stat& status) {
    return {fileTypeOf(status.st_mode),
            static_cast<std::uint64_t>(status.st_size),
            status.st_mode & 07777,
            status.st_uid,
            status.st_gid,
            static_cast<std::uint64_t>(status.st_dev),
            static_cast<std::uint64_t>(status.st_ino),
            static_cast<std::uint64_t>(status.st_nlink),
            status.st_mtim};
}

} // namespace sweeply
