#pragma once

#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply {

/// What a flat package says of itself.
struct PackageInfo {
    std::string identifier;
    std::string installLocation;
};

/// Reads the XML of a package's "PackageInfo". What it does not say is empty; what is no well-formed XML is an error.
/// No external entity is read.
[[nodiscard]] tl::expected<PackageInfo, std::string> parsePackageInfo(std::string_view bytes);

} // namespace sweeply
