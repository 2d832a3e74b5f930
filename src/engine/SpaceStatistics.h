#pragma once

#include "engine/EngineServices.h"
#include "platform/NotificationCenter.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace sweeply {

/// How much was freed: in the current removal, since the program started, and over all runs, which the preferences
/// keep. Adds up every RemovedAmountOfSpace. Any thread.
class SpaceStatistics final {
  public:
    explicit SpaceStatistics(EngineServices services);

    /// A removal starts.
    void startRun() { m_currentRemovedAmountOfSpace = 0; }
    /// Bytes removed in the current removal.
    [[nodiscard]] std::uint64_t currentRemovedAmountOfSpace() const { return m_currentRemovedAmountOfSpace; }
    [[nodiscard]] std::uint64_t numberLastRunSizeSaved() const { return m_lastRunSizeSaved; }
    void setLastRunSizeSaved(std::uint64_t bytes);
    [[nodiscard]] std::uint64_t numberTotalSizeSaved() const;
    void setTotalSizeSaved(std::uint64_t bytes);

    // For showing
    [[nodiscard]] std::string lastRunSizeSaved() const;
    [[nodiscard]] std::string totalSizeSaved() const;

  private:
    void removedAmoutOfSpace(std::uint64_t bytes);

    EngineServices m_services;
    std::atomic<std::uint64_t> m_currentRemovedAmountOfSpace{0};
    std::atomic<std::uint64_t> m_lastRunSizeSaved{0};
    NotificationCenter::Subscription m_removed;
};

} // namespace sweeply
