#pragma once

#include "formats/BillOfMaterials.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace sweeply::bom {

/// Entries of a bill that make no sense, and what is wrong with the first; `reason` is empty for none.
struct LeftOut {
    std::size_t count = 0;
    std::string reason;
};

/// What a tool says of them: "2 of its entries are left out: REASON". Empty for none.
[[nodiscard]] std::string describe(const LeftOut& leftOut);

/// Reads a bill of materials and hands its entries on, a folder before what is in it and siblings as they are stored,
/// which is by name. Paths are like those of write(); the entry is good for the call only. An entry that cannot be,
/// such as one called "..", is left out with all that lies in it; the rest is handed on. An error says what is wrong
/// with the whole; nothing was handed on then. Records of any length are read as far as they go: older ones are
/// shorter.
[[nodiscard]] tl::expected<LeftOut, std::string> read(std::string_view bytes,
                                                      const std::function<void(const Entry&)>& visit);

} // namespace sweeply::bom
