#include "formats/BomReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace sweeply;
    std::size_t entries = 0;
    const auto listed = bom::read({reinterpret_cast<const char*>(bytes), size}, [&](const bom::Entry& entry) {
        ++entries;
        // Joined to a folder these must stay below it.
        if (entry.path.empty() || entry.path.front() == '/' ||
            ("/" + entry.path + "/").find("/../") != std::string::npos)
            std::abort();
    });
    if (!listed && entries != 0)
        std::abort();
    return 0;
}
