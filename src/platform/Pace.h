#pragma once

#include <chrono>

namespace sweeply {

/// How long workers rest, so that a scan does not load the machine.
struct Pace {
    std::chrono::milliseconds threadSleep{200};      ///< after each item examined
    std::chrono::milliseconds pause{2000};           ///< between two looks while paused or waiting
    std::chrono::milliseconds removeThreadSleep{90}; ///< after each item removed
    std::chrono::milliseconds inventoryDelay{2000};  ///< before the list of applications is built

    /// For someone working at the machine meanwhile.
    static Pace gentle() { return {}; }
    /// For scripts and tests: no rest at all.
    static Pace full() {
        using std::chrono::milliseconds;
        return {milliseconds{0}, milliseconds{0}, milliseconds{0}, milliseconds{0}};
    }
};

} // namespace sweeply
