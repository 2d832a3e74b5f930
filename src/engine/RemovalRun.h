#pragma once

#include "engine/EngineServices.h"
#include "platform/Error.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace sweeply {

class AuthorisationSession;
class ChangeRuns;
class SpaceStatistics;

/// The removal under way, if any: one at a time, on a thread of its own, with everything that counts per removal begun
/// anew. Started and finished on the main thread.
class RemovalRun final {
  public:
    /// All outlive it.
    RemovalRun(const EngineServices& services, ChangeRuns& runs, AuthorisationSession& authorisation,
               SpaceStatistics& statistics)
        : m_services(services), m_runs(runs), m_authorisation(authorisation), m_statistics(statistics) {}

    /// True from begin() to finish(). Any thread.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Nothing may be running. A failure says why there can be no run of that command now; then none begins.
    Result<void> begin(const std::string& command);
    /// Does `work` on the removal's thread and then, on the main thread, `ended`, whatever the work throws.
    void start(std::function<void()> work, std::function<void()> ended);
    /// Closes the run and saves what it changed in the preferences.
    void finish();
    /// Waits for the thread.
    void join();

  private:
    const EngineServices& m_services;
    ChangeRuns& m_runs;
    AuthorisationSession& m_authorisation;
    SpaceStatistics& m_statistics;
    std::atomic<bool> m_isRunning{false};
    std::jthread m_thread;
};

} // namespace sweeply
