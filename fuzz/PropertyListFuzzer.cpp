#include "formats/PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever can be read can be written in both forms and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace sweeply;
    if (const auto value = plist::parse({reinterpret_cast<const char*>(bytes), size})) {
        if (!plist::parse(plist::writeBinary(*value)) || plist::writeXml(*value).empty())
            std::abort();
    }
    return 0;
}
