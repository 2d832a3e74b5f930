#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply {

/// What a flat package says of itself.
struct PackageInfo {
    std::string identifier;                     ///< empty where it names none
    std::optional<std::string> installLocation; ///< an empty one is one as well
};

/// Reads the XML of a package's "PackageInfo". What is no well-formed XML is an error. No external entity is read.
[[nodiscard]] tl::expected<PackageInfo, std::string> parsePackageInfo(std::string_view bytes);

} // namespace sweeply
