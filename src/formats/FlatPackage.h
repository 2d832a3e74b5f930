#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply {

/// Limits for a stranger's archive.
struct FlatPackageLimits {
    std::size_t members = 100'000;
    std::size_t memberSize = std::size_t{128} << 20U; ///< unpacked bytes of a member that is wanted
    std::size_t totalSize = std::size_t{512} << 20U;  ///< of all that are wanted
};

/// Reads members of a flat installer package, which is a XAR archive, from an open file. `isWanted` is asked for each
/// member's path; `take` gets the path and the bytes of those it wants, in the archive's order. An error says what is
/// wrong; members before the damage were handed on.
[[nodiscard]] tl::expected<void, std::string>
readFlatPackage(int file, const std::function<bool(std::string_view path)>& isWanted,
                const std::function<void(std::string_view path, std::string bytes)>& take,
                const FlatPackageLimits& limits = {});

} // namespace sweeply
