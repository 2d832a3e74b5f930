#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Bills of materials: the list of everything an installer package put on the disk, with modes, owners, sizes and
/// checksums. Pure functions over bytes, safe from any thread.
namespace sweeply::bom {

enum class EntryType : std::uint8_t { File = 1, Directory = 2, SymbolicLink = 3, Device = 4 };

/// One installed item.
struct Entry {
    /// Below the install location: "Applications/Foo.app", without "./" in front. "." is the install location itself.
    std::string path;
    EntryType type = EntryType::File;
    std::uint16_t mode = 0; ///< with the type bits, as stat gives it: 0100644
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    std::uint32_t modified = 0; ///< seconds since 1970
    std::uint32_t size = 0;     ///< bytes
    std::uint32_t checksum = 0; ///< of a file's contents or of a link's target, as checksum() gives it
    std::string linkTarget;     ///< of a symbolic link
    std::uint32_t device = 0;   ///< number of a device
};

/// The CRC that the POSIX tool cksum prints.
[[nodiscard]] std::uint32_t checksum(std::string_view bytes);

/// The bill for `entries`, given in any order. The install location and folders above an entry that are not listed
/// themselves are added as root's, mode 040755; of entries with the same path the last counts.
[[nodiscard]] std::string write(const std::vector<Entry>& entries);

} // namespace sweeply::bom
