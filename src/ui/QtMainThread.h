#pragma once

#include "platform/MainThread.h"

#include <QObject>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace sweeply {

/// The thread of Qt's event loop. Made on that thread.
class QtMainThread final : public MainThread {
  public:
    void runAndWait(const std::function<void()>& call) override;
    void runLater(std::function<void()> call) override;
    [[nodiscard]] bool isMainThread() const override;

    /// The event loop is about to wait for worker threads. From now on they make their calls themselves, one at a time,
    /// because nobody else would. Called on the main thread, like open().
    void close();
    void open();

  private:
    struct Turn {
        const std::function<void()>& call;
        enum class State { Waiting, Running, Done } state = State::Waiting;
    };

    /// Makes the call that has waited longest.
    void takeTurn();

    QObject m_context; ///< lives on the main thread; calls handed to it are dropped when it goes
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Turn*> m_turns; ///< guarded by m_mutex, like the next
    bool m_isClosed = false;
    std::recursive_mutex m_workersCalls; ///< held by the worker that makes a call itself
};

} // namespace sweeply
