#pragma once

#include "formats/BillOfMaterials.h"

#include <functional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply::bom {

/// Reads a bill of materials and hands its entries on, a folder before what is in it and siblings as they are stored,
/// which is by name. Paths are like those of write(); the entry is good for the call only. An error says what is wrong;
/// nothing was handed on then. Records of any length are read as far as they go: older ones are shorter.
[[nodiscard]] tl::expected<void, std::string> read(std::string_view bytes,
                                                   const std::function<void(const Entry&)>& visit);

} // namespace sweeply::bom
