#pragma once

#include "formats/PropertyList.h"
#include "platform/FileManager.h"

#include <string>
#include <string_view>

namespace sweeply {

/// The property list at `path`, read anew. Damaged when it does not parse, TooLarge when it is no plausible one.
/// Thread-safe.
[[nodiscard]] Result<plist::Value> propertyListAtPath(const FileManager& files, const std::string& path);

/// The property list "Contents/Info.plist" of the bundle at `bundlePath`, under the same rules.
[[nodiscard]] Result<plist::Value> infoOfBundle(const FileManager& files, std::string_view bundlePath);

} // namespace sweeply
