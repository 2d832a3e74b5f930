#pragma once

#include <sys/resource.h>

namespace sweeply {

/// Who has read more blocks than this reads from the disk and not from memory.
inline constexpr long kFewBlocks = 64;
/// So many helpers keep a disk busy: with whoever they help some eight requests, which wait rather than work.
inline constexpr unsigned kHelpersFromDisk = 6;

/// Blocks of 512 bytes that the calling thread has waited for the disk to read, since the thread began.
[[nodiscard]] inline long blocksReadByThisThread() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_inblock;
}

} // namespace sweeply
