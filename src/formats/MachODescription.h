#pragma once

#include "formats/MachOReader.h"

#include <string>
#include <string_view>

/// Mach-O files in the words of the Mac's own tools, which other programs read.
namespace sweeply::macho {

/// Each slice of a fat file with its processor, place, size and alignment, six lines a slice.
[[nodiscard]] std::string detailedInfo(std::string_view path, const FatFile& file);
/// The slices' names in one line.
[[nodiscard]] std::string briefInfo(std::string_view path, const FatFile& file);
/// The same for a thin file, in one line.
[[nodiscard]] std::string briefInfo(std::string_view path, const FatArch& thin);

} // namespace sweeply::macho
