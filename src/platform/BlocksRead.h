#pragma once

#include <sys/resource.h>

namespace sweeply {

/// Blocks of 512 bytes that the calling thread has waited for the disk to read, since the thread began.
[[nodiscard]] inline long blocksReadByThisThread() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_inblock;
}

} // namespace sweeply
