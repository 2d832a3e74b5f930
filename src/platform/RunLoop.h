#pragma once

#include "platform/MainThread.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace sweeply {

/// The main thread of a program without windows.
///
/// Nothing here is bound to one thread as widgets are, so "on the main thread" means "while nothing else is": a
/// worker's runAndWait takes the loop's turn and makes the call itself. That spares two context switches a call, which
/// would cost more than removing the file that the call is about.
class RunLoop final : public MainThread {
  public:
    /// The thread that makes it is the main thread.
    RunLoop() : m_mainThread(std::this_thread::get_id()) {}

    void runAndWait(const std::function<void()>& call) override;
    void runLater(std::function<void()> call) override;
    [[nodiscard]] bool isMainThread() const override;

    /// Runs what is handed over until `done()` is true; asked again after each call, also a worker's own, and each
    /// `interval`, in which `tick` runs. Both are only ever called by who acts as the main thread. Main thread only.
    void runUntil(const std::function<bool()>& done, std::chrono::milliseconds interval = std::chrono::hours(1),
                  const std::function<void()>& tick = {});

  private:
    const std::thread::id m_mainThread;
    std::recursive_mutex m_turn; ///< held by whoever acts as the main thread
    std::atomic<std::thread::id> m_turnOwner{};
    const std::function<bool()>* m_done = nullptr; ///< of the loop that runs; guarded by m_turn

    std::mutex m_queueMutex;
    std::condition_variable m_queued;
    std::deque<std::function<void()>> m_queue; ///< guarded by m_queueMutex
    bool m_isDone = false;                     ///< a worker's call made it so; guarded by m_queueMutex
};

} // namespace sweeply
