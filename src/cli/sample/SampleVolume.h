#pragma once

#include "platform/Error.h"

#include <cstdint>
#include <string>

namespace sweeply {

/// What was written.
struct SampleTotals {
    std::uint64_t files = 0; ///< symbolic links included
    std::uint64_t folders = 0;
    std::uint64_t bytes = 0; ///< in the files
};

/// Most that the contents of a sample volume can be multiplied by; such a volume has some millions of files.
inline constexpr unsigned kLargestSampleScale = 2000;

/// Writes a small Mac OS X 10.6.8 system with one user, "sam", into the folder `hostDirectory` of this machine, for
/// trying things on: applications, caches, logs, receipts, leftovers, and documents that nothing may ever touch. The
/// same names and contents each time.
///
/// The folder and those above it are made where missing; one that holds anything is refused and left as it is. `scale`,
/// 1 and more, multiplies the numbers of cache entries, logs and applications. An error names the file that could not
/// be written; what was written before it stays.
[[nodiscard]] Result<SampleTotals> writeSampleVolume(const std::string& hostDirectory, unsigned scale);

} // namespace sweeply
