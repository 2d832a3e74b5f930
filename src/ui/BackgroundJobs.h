#pragma once

#include <QObject>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace sweeply {

/// Looks something up on a thread of its own, one job after another, and brings the result to the main thread. Only the
/// last job that was started counts: the one before it is asked to stop, and its result is dropped. Belongs to the main
/// thread; its end waits for the job under way, and nothing is delivered any more.
class BackgroundJobs final {
  public:
    /// Shows a job's result, on the main thread.
    using Delivery = std::function<void()>;
    /// The work, on the thread; ends early when it is asked to.
    using Job = std::function<Delivery(const std::stop_token&)>;

    BackgroundJobs() = default;
    ~BackgroundJobs();

    void start(Job job);
    /// Whatever is still to come is not wanted any more.
    void forget();

  private:
    void work();

    QObject m_context; ///< of the deliveries
    std::uint64_t m_started = 0;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Job m_next; ///< guarded by m_mutex, like the rest
    std::uint64_t m_nextNumber = 0;
    std::stop_source m_stop;
    bool m_isEnding = false;

    std::thread m_thread; ///< from the first job on
};

} // namespace sweeply
