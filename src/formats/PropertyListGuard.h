#pragma once

#include <string>
#include <string_view>

namespace sweeply::plist {

/// Looks over a property list before the library reads it, because the library recurses once a level and copies a
/// shared object for every reference to it: a short file could exhaust the stack or the memory.
///
/// Both give why the list is refused, or an empty text. They check no more than that; the library does the rest.
[[nodiscard]] std::string reasonAgainstBinary(std::string_view bytes);
[[nodiscard]] std::string reasonAgainstXml(std::string_view bytes);

} // namespace sweeply::plist
