#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace sweeply {

/// Work that the calling thread shares with helpers, where doing one task brings up more.
///
/// A worker keeps what it finds to itself and gives some away only while wantsWork() says so: the queue stays short and
/// memory bounded, however much there is to do. Starts with the calling thread alone, so that little work starts no
/// thread. Joins its helpers when destroyed; by then every worker must be through with take().
template<typename Task>
class WorkQueue final {
  public:
    WorkQueue() = default;
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;

    /// Starts threads that run `work`, which must call take() until there is nothing. Called by the first worker only.
    /// Where the system gives fewer threads, fewer work.
    template<typename Work>
    void startHelpers(unsigned count, const Work& work) {
        for (unsigned i = 0; i < count; ++i) {
            addWorkers(1);
            try {
                m_helpers.emplace_back(work);
            } catch (const std::system_error&) {
                addWorkers(-1);
                return;
            }
        }
    }

    /// Would another worker soon be idle? Cheap enough to ask for every entry of a folder.
    [[nodiscard]] bool wantsWork() const { return m_wantsWork.load(std::memory_order_relaxed); }

    void give(Task task) {
        {
            const std::lock_guard lock(m_mutex);
            m_tasks.push_back(std::move(task));
            updateWantsWork();
        }
        m_changed.notify_one();
    }

    /// The next task. Waits for one while any worker may still give some; nothing when all is done.
    std::optional<Task> take() {
        std::unique_lock lock(m_mutex);
        if (++m_waiting == m_workers && m_tasks.empty()) {
            m_isDone = true;
            m_changed.notify_all();
        }
        m_changed.wait(lock, [this] { return m_isDone || !m_tasks.empty(); });
        --m_waiting;
        if (m_tasks.empty())
            return std::nullopt;
        std::optional<Task> task = std::move(m_tasks.front());
        m_tasks.pop_front();
        updateWantsWork();
        return task;
    }

  private:
    void addWorkers(int count) {
        const std::lock_guard lock(m_mutex);
        m_workers += count;
        updateWantsWork();
    }

    void updateWantsWork() {
        m_wantsWork.store(m_workers > 1 && m_tasks.size() < 2 * static_cast<std::size_t>(m_workers),
                          std::memory_order_relaxed);
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by m_mutex:
    std::deque<Task> m_tasks;
    int m_workers = 1;
    int m_waiting = 0;
    bool m_isDone = false;

    std::atomic<bool> m_wantsWork = false;
    std::vector<std::jthread> m_helpers; ///< of the first worker alone; last, to be joined before the rest goes
};

} // namespace sweeply
