#include "formats/RssFeed.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto items = sweeply::parseRssFeed({reinterpret_cast<const char*>(bytes), size});
    if (items && !items->empty() && items->front().enclosureAttribute("url").size() > size)
        std::abort();
    return 0;
}
