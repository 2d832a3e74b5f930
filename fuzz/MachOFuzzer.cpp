#include "formats/MachODescription.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace sweeply::macho;
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    if (const auto thin = readThin(file))
        (void)briefInfo("x", *thin);
    const auto fat = readFat(file, size);
    if (!fat)
        return 0;
    if (detailedInfo("x", *fat).empty() || briefInfo("x", *fat).empty())
        std::abort();
    // What was read is what is written.
    const auto table = fatHeader(fat->slices, fat->isWide);
    for (const auto& slice : fat->slices) {
        if (slice.offset > size || slice.size > size - slice.offset || slice.offset < table.size())
            std::abort();
    }
    const auto again = readFat(table + std::string(file.substr(table.size())), size);
    if (!again || again->slices.size() != fat->slices.size())
        std::abort();
    return 0;
}
