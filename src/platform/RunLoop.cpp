#include "platform/RunLoop.h"

#include <utility>

namespace sweeply {

namespace {

/// Takes the turn and puts back whose it was before, for nested calls.
class Turn {
  public:
    Turn(std::recursive_mutex& mutex, std::atomic<std::thread::id>& owner)
        : m_lock(mutex), m_owner(owner), m_before(owner.exchange(std::this_thread::get_id())) {}
    ~Turn() { m_owner = m_before; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    std::lock_guard<std::recursive_mutex> m_lock;
    std::atomic<std::thread::id>& m_owner;
    std::thread::id m_before;
};

} // namespace

void RunLoop::runAndWait(const std::function<void()>& call) {
    Turn turn(m_turn, m_turnOwner);
    call();
    // Told only when it matters: waking the loop for each call would cost more than most calls.
    if (m_done && std::this_thread::get_id() != m_mainThread && (*m_done)()) {
        std::lock_guard lock(m_queueMutex);
        m_isDone = true;
        m_queued.notify_one();
    }
}

void RunLoop::runLater(std::function<void()> call) {
    {
        std::lock_guard lock(m_queueMutex);
        m_queue.push_back(std::move(call));
    }
    m_queued.notify_one();
}

bool RunLoop::isMainThread() const {
    const auto self = std::this_thread::get_id();
    return self == m_mainThread || self == m_turnOwner;
}

void RunLoop::runUntil(const std::function<bool()>& done, std::chrono::milliseconds interval,
                       const std::function<void()>& tick) {
    /// Has workers ask `done` while the loop runs; loops may be nested.
    struct Asking {
        RunLoop& loop;
        const std::function<bool()>* asked;
        explicit Asking(RunLoop& runLoop, const std::function<bool()>& predicate) : loop(runLoop), asked(&predicate) {
            swap();
        }
        ~Asking() { swap(); }
        void swap() {
            Turn turn(loop.m_turn, loop.m_turnOwner);
            std::swap(loop.m_done, asked);
        }
    } asking(*this, done);

    auto nextTick = std::chrono::steady_clock::now() + interval;
    for (;;) {
        {
            Turn turn(m_turn, m_turnOwner);
            if (done())
                return;
        }
        std::function<void()> call;
        {
            std::unique_lock lock(m_queueMutex);
            if (!m_queued.wait_until(lock, nextTick, [&] { return m_isDone || !m_queue.empty(); })) {
                nextTick = std::chrono::steady_clock::now() + interval;
                lock.unlock();
                if (tick)
                    runAndWait(tick);
                continue;
            }
            if (std::exchange(m_isDone, false))
                continue;
            call = std::move(m_queue.front());
            m_queue.pop_front();
        }
        runAndWait(call);
    }
}

} // namespace sweeply
