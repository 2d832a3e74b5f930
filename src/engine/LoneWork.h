#pragma once

#include <atomic>
#include <functional>
#include <stop_token>
#include <thread>

namespace sweeply {

class MainThread;

/// Work on a thread of its own beside which nothing else may begin. Main thread.
class LoneWork final {
  public:
    using Work = std::function<void(const std::stop_token&)>;

    explicit LoneWork(MainThread& mainThread) : m_mainThread(mainThread) {}

    /// Any thread.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Nothing may be running. Does `work`, and then `ended` on the main thread, when nothing runs any more.
    void start(Work work, std::function<void()> ended);
    /// Asks the work to stop and waits for its end.
    void stopAndJoin();

  private:
    MainThread& m_mainThread;
    std::atomic<bool> m_isRunning{false};
    std::jthread m_thread;
};

} // namespace sweeply
