#include "engine/RemovalRun.h"

#include "engine/AuthorisationSession.h"
#include "engine/SpaceStatistics.h"
#include "engine/record/ChangeRuns.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/ReadProblems.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

#include <exception>
#include <utility>

namespace sweeply {

Result<void> RemovalRun::begin(const std::string& command) {
    join(); // the last run's thread may still be on its way out
    const auto begun = m_runs.begin(command);
    m_statistics.startRun();
    m_authorisation.startRun();
    m_services.problems.setRemoving(true);
    if (begun)
        m_isRunning = true;
    return begun;
}

void RemovalRun::start(std::function<void()> work, std::function<void()> ended) {
    m_thread = std::jthread([this, work = std::move(work), ended = std::move(ended)] {
        try {
            work();
        } catch (const std::exception& exception) {
            m_services.log.log(formatText("[Global Clean] Exception occured: %@", {exception.what()}));
        }
        m_services.mainThread.runAndWait(ended);
    });
}

void RemovalRun::finish() {
    m_services.problems.setRemoving(false);
    m_runs.finish();
    m_isRunning = false;
    if (const auto saved = m_services.defaults.synchronize(); !saved)
        m_services.log.log(saved.error().message());
}

void RemovalRun::join() {
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace sweeply
