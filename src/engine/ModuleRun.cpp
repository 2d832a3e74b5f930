#include "engine/ModuleRun.h"

#include "engine/EngineEvents.h"
#include "platform/NotificationCenter.h"
#include "platform/Pace.h"
#include "platform/ReadProblems.h"

namespace sweeply {

void ModuleRun::continueRun() {
    m_flags.setStopRequested(false);
    setPaused(false);
}

void ModuleRun::stopRun() {
    m_flags.setStopRequested(true);
    setPaused(false);
    setStopped(true);
    m_totalProcentage = 0;
}

void ModuleRun::sleepAfterItem() { m_flags.sleepFor(m_services.pace.threadSleep); }

void ModuleRun::sleepBeforeRemoval() { m_flags.sleepFor(m_services.pace.removeThreadSleep); }

void ModuleRun::incProgressBy(std::uint32_t units) {
    m_totalProcentDone += units;
    m_services.notifications.post(DataUpdated{});
}

void ModuleRun::incTotalSizeDoneWithInt(std::uint64_t bytes) {
    m_totalSizeDone += bytes;
    m_services.notifications.post(DataUpdated{});
}

void ModuleRun::setCurrentItem(std::string_view path) {
    std::lock_guard lock(m_currentItemMutex);
    m_currentItem = path;
}

std::string ModuleRun::currentItem() const {
    std::lock_guard lock(m_currentItemMutex);
    return m_currentItem;
}

void ModuleRun::reportProblem(const Error& error) { m_services.problems.add(error); }

void ModuleRun::startProgress() {
    forgetUnits();
    m_countOfFilesFound = 0;
    startProgress(0);
}

void ModuleRun::startProgress(std::uint64_t bytes) {
    m_totalSizeAtCleanStart = bytes;
    m_totalSizeDone = 0;
}

} // namespace sweeply
