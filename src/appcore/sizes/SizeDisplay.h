#pragma once

#include "platform/SystemVersion.h"

#include <cstdint>
#include <string>

namespace sweeply {

/// How a system counts bytes. Block size and divisors switch together.
enum class SizeUnits {
    Decimal, ///< 1000 bytes a KB, blocks of 4000: Mac OS X 10.6 and later
    Binary,  ///< 1024 bytes a KB, blocks of 4096
};

[[nodiscard]] SizeUnits sizeUnitsOf(const SystemVersion& version);
/// The bytes that sizes on disk are rounded up to.
[[nodiscard]] std::uint64_t allocationBlock(SizeUnits units);

/// The size for a person, in KB, MB or GB with two decimals: "4.10 KB"; "Zero KB" for 0. Localised.
[[nodiscard]] std::string stringSizeFromLong(std::uint64_t size, SizeUnits units);

} // namespace sweeply
