#include "engine/plan/Plan.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A plan that is read says the same once it was written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto plan = sweeply::parsePlan({reinterpret_cast<const char*>(bytes), size});
    if (!plan)
        return 0;
    const auto text = sweeply::planText(*plan);
    const auto again = text ? sweeply::parsePlan(*text) : sweeply::Failure(text.error());
    if (!again || sweeply::planText(*again).value() != *text)
        std::abort();
    return 0;
}
