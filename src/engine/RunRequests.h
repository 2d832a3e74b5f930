#pragma once

#include <atomic>

namespace sweeply {

class NotificationCenter;

/// What was asked of the runs under way: to rest, to go on, to stop. The main thread asks and every worker is told;
/// any thread may look.
class RunRequests final {
  public:
    explicit RunRequests(NotificationCenter& notifications) : m_notifications(notifications) {}

    /// A run begins: whatever was asked of the last one is forgotten.
    void start();
    void togglePause();
    void stop();
    /// The run is over.
    void finish() { m_stopping = false; }

    [[nodiscard]] bool isPaused() const { return m_paused; }
    [[nodiscard]] bool isStopped() const { return m_stopped; }
    /// Stopped, but not over yet.
    [[nodiscard]] bool isStopping() const { return m_stopping; }

  private:
    NotificationCenter& m_notifications;
    std::atomic<bool> m_paused{false};
    std::atomic<bool> m_stopped{true};
    std::atomic<bool> m_stopping{false};
};

} // namespace sweeply
