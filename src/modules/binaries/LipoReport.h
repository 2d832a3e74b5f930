#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class SystemLog;

/// Reads what the tool "lipo" said in detail about some files: for each that is fat, by the name it was asked under,
/// the bytes of slices that are not to be kept. A slice with fewer lines than it should have is logged and counts
/// nothing.
[[nodiscard]] std::map<std::string, std::uint64_t>
foreignBytesOfFiles(std::string_view output, const std::vector<std::string>& keptSlices, SystemLog& log);

} // namespace sweeply
