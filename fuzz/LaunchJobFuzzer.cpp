#include "tools/launchctl/Units.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// A configuration cannot put lines of its own into a unit, and its label is found again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto list = sweeply::plist::parse({reinterpret_cast<const char*>(bytes), size});
    const auto job = list ? launchctl::jobIn(*list) : tl::unexpected(std::string());
    if (!job)
        return 0;
    const auto linesOf = [](const std::string& unit) {
        return static_cast<std::size_t>(std::ranges::count(unit, '\n'));
    };
    launchctl::Job plain;
    plain.label = "a";
    plain.arguments = {"/a"};
    plain.runsAtLoad = job->runsAtLoad;
    if (launchctl::labelOf(launchctl::unitName(job->label)) != job->label ||
        linesOf(launchctl::serviceUnit(*job)) != linesOf(launchctl::serviceUnit(plain)))
        std::abort();
    (void)launchctl::pathUnit(*job, {"/media"});
    return 0;
}
