#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace sweeply {

/// The pause and stop requests of one module: set by the main thread, obeyed by its worker at once.
///
/// "Stopped" is also what an idle module is; a run's start takes it back. A stop that the person asked for is therefore
/// kept apart: no worker's start can take that back, only the main thread's next run.
class RunFlags final {
  public:
    [[nodiscard]] bool stopped() const { return m_stopped || m_stopRequested; }
    [[nodiscard]] bool paused() const { return m_paused; }
    /// Asked to stop when stopped() turns true; a new one once it is false again.
    [[nodiscard]] std::stop_token stopToken() const;

    void setStopped(bool stopped) { set(m_stopped, stopped); }
    void setStopRequested(bool requested) { set(m_stopRequested, requested); }
    void setPaused(bool paused) { set(m_paused, paused); }

    /// Returns when the pause, if any, is over or a stop is asked for.
    void waitWhilePaused();
    /// Rests; a stop ends it early.
    void sleepFor(std::chrono::milliseconds time);

  private:
    void set(std::atomic<bool>& flag, bool value);

    mutable std::mutex m_mutex; ///< makes a change and its waiters meet
    std::condition_variable m_changed;
    std::stop_source m_stopSource; ///< guarded by m_mutex
    std::atomic<bool> m_stopped{true};
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_paused{false};
};

} // namespace sweeply
