#include "engine/RunFlags.h"

namespace sweeply {

std::stop_token RunFlags::stopToken() const {
    std::lock_guard lock(m_mutex);
    return m_stopSource.get_token();
}

void RunFlags::waitWhilePaused() {
    if (!m_paused)
        return;
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_paused || stopped(); });
}

void RunFlags::sleepFor(std::chrono::milliseconds time) {
    if (time == std::chrono::milliseconds::zero())
        return;
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, time, [this] { return stopped(); });
}

void RunFlags::set(std::atomic<bool>& flag, bool value) {
    std::stop_source source;
    bool isStopped = false;
    {
        std::lock_guard lock(m_mutex);
        const bool wasStopped = stopped();
        flag = value;
        isStopped = stopped();
        if (wasStopped && !isStopped)
            m_stopSource = std::stop_source();
        source = m_stopSource;
    }
    if (isStopped)
        source.request_stop(); // without the lock: it calls whoever waits for it
    m_changed.notify_all();
}

} // namespace sweeply
