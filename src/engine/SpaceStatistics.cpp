#include "engine/SpaceStatistics.h"

#include "engine/CoordinatorPreferences.h"
#include "engine/EngineEvents.h"
#include "platform/UserDefaults.h"

namespace sweeply {

SpaceStatistics::SpaceStatistics(EngineServices services)
    : m_services(services),
      m_removed(services.notifications.observe<RemovedAmountOfSpace>(
          [this](const RemovedAmountOfSpace& event) { removedAmoutOfSpace(event.removedSize); })) {}

void SpaceStatistics::removedAmoutOfSpace(std::uint64_t bytes) {
    m_currentRemovedAmountOfSpace += bytes;
    m_lastRunSizeSaved += bytes;
    // Added and not set, so that what another Sweeply saves at the same time counts too.
    m_services.defaults.addToUnsigned(coordinator::kTotalSizeSaved, bytes);
    m_services.notifications.post(SizeSavedChanged{});
}

void SpaceStatistics::setLastRunSizeSaved(std::uint64_t bytes) {
    m_lastRunSizeSaved = bytes;
    m_services.notifications.post(SizeSavedChanged{});
}

std::uint64_t SpaceStatistics::numberTotalSizeSaved() const {
    return m_services.defaults.unsignedForKey(coordinator::kTotalSizeSaved);
}

void SpaceStatistics::setTotalSizeSaved(std::uint64_t bytes) {
    m_services.defaults.setUnsigned(coordinator::kTotalSizeSaved, bytes);
    m_services.notifications.post(SizeSavedChanged{});
}

std::string SpaceStatistics::lastRunSizeSaved() const {
    return stringSizeFromLong(numberLastRunSizeSaved(), m_services.units);
}

std::string SpaceStatistics::totalSizeSaved() const {
    return stringSizeFromLong(numberTotalSizeSaved(), m_services.units);
}

} // namespace sweeply
