#pragma once

#include "platform/Error.h"

#include <cstdint>

namespace sweeply {

// What the engine's parts tell each other through the notification centre.

/// The coordinator wants every worker to rest.
struct RunningPaused {
    static constexpr const char* kName = "RunningPaused";
};

struct RunningContinued {
    static constexpr const char* kName = "RunningContinued";
};

/// The coordinator wants every worker to end at its next item.
struct RunningStopped {
    static constexpr const char* kName = "RunningStopped";
};

/// A module's figures changed. Posted often and from any thread; whoever draws should limit itself.
struct DataUpdated {
    static constexpr const char* kName = "DataUpdated";
};

/// An item was removed.
struct RemovedAmountOfSpace {
    static constexpr const char* kName = "removedAmoutOfSpace";
    std::uint64_t removedSize = 0; ///< bytes
};

/// A removal is over, or could not begin: the gate and the last run's record tell how it went. Posted on the main
/// thread.
struct RemovalEnded {
    static constexpr const char* kName = "removalEnded";
};

/// Something in the target could not be read; the scan goes on without it. Posted once for each path, on the thread
/// that met it.
struct ProblemFound {
    static constexpr const char* kName = "problemFound";
    Error error;
};

/// A module is about to analyse dropped files.
struct PrepareInterfaceForAnaliz {
    static constexpr const char* kName = "prepareInterfaceForAnaliz";
};

/// Bytes saved in this run or in all runs changed; posted on the main thread or as it.
struct SizeSavedChanged {
    static constexpr const char* kName = "totalSizeSaved";
};

} // namespace sweeply
