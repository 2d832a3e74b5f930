#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <sys/types.h>

namespace sweeply {

enum class FileType : std::uint8_t { Regular, Directory, SymbolicLink, Other };

/// What the file system says of one item.
struct FileAttributes {
    FileType type = FileType::Other;
    std::uint64_t size = 0; ///< bytes, as the file system reports it
    mode_t mode = 0;        ///< permission bits
    uid_t owner = 0;
    gid_t group = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 0;
    timespec modified{};
};

struct DirectoryEntry {
    std::string name;
    FileType type = FileType::Other;
};

} // namespace sweeply
