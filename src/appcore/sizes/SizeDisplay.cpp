#include "appcore/sizes/SizeDisplay.h"

#include "platform/Localization.h"

namespace sweeply {

SizeUnits sizeUnitsOf(const SystemVersion& version) {
    return version.isSnowLeopardOrBetter() ? SizeUnits::Decimal : SizeUnits::Binary;
}

// 4000 is no allocation block of any disk. It is what goes with decimal units, and users compare these figures.
std::uint64_t allocationBlock(SizeUnits units) { return units == SizeUnits::Decimal ? 4000 : 4096; }

std::string stringSizeFromLong(std::uint64_t size, SizeUnits units) {
    const std::uint64_t kilo = units == SizeUnits::Decimal ? 1000 : 1024;
    const std::uint64_t mega = kilo * kilo;
    const std::uint64_t giga = mega * kilo;
    const auto inUnitsOf = [size](std::uint64_t unit) { return static_cast<double>(size) / static_cast<double>(unit); };
    if (size == 0)
        return localizedString("Zero KB");
    if (size > giga)
        return localizedFormat("%0.2f GB", {inUnitsOf(giga)});
    if (size > mega)
        return localizedFormat("%0.2f MB", {inUnitsOf(mega)});
    return localizedFormat("%0.2f KB", {inUnitsOf(kilo)});
}

} // namespace sweeply
