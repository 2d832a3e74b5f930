#pragma once

#include "formats/MachO.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

namespace sweeply::macho {

/// The table of a fat file.
struct FatFile {
    bool isWide = false; ///< with offsets and sizes of 64 bits
    std::vector<FatArch> slices;

    [[nodiscard]] std::uint32_t magic() const { return isWide ? kFatMagic64 : kFatMagic; }
};

/// Could a file with these first bytes be fat? Eight of them tell it from all but few others: a Java class begins
/// alike.
[[nodiscard]] bool mayBeFat(std::string_view head);

/// How many bytes of the file its table takes, from its first eight; nothing when it is not fat.
[[nodiscard]] std::optional<std::uint64_t> fatTableSize(std::string_view head);

/// Reads the table in `head`, the beginning of a file of `fileSize` bytes. An error says what is wrong with it: every
/// slice lies in the file, where its alignment wants it, apart from the table and all others, and no two are for the
/// same processor.
[[nodiscard]] tl::expected<FatFile, std::string> readFat(std::string_view head, std::uint64_t fileSize);

/// The processor of a thin file that begins with `head`; nothing for any other file.
[[nodiscard]] std::optional<FatArch> readThin(std::string_view head);

/// What the Mac's tools call the processor of a slice; nothing for one that they do not know.
[[nodiscard]] const Architecture* architectureOf(const FatArch& slice);

} // namespace sweeply::macho
