#pragma once

#include "platform/FileStatus.h"

#include <dirent.h>
#include <fcntl.h>
#include <optional>

namespace sweeply {

inline bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// The type that a folder's entry tells by `code` (one of DT_...). Some file systems leave it out; then the item itself
/// is asked. Nothing when it is gone.
inline std::optional<FileType> entryType(unsigned char code, int directory, const char* name) {
    switch (code) {
    case DT_REG:
        return FileType::Regular;
    case DT_DIR:
        return FileType::Directory;
    case DT_LNK:
        return FileType::SymbolicLink;
    case DT_UNKNOWN: {
        struct stat status {};
        if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return std::nullopt;
        return fileTypeOf(status.st_mode);
    }
    default:
        return FileType::Other;
    }
}

} // namespace sweeply
