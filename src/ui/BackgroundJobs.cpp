#include "ui/BackgroundJobs.h"

#include <utility>

namespace sweeply {

BackgroundJobs::~BackgroundJobs() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_stop.request_stop();
    }
    m_changed.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

void BackgroundJobs::start(Job job) {
    {
        const std::lock_guard lock(m_mutex);
        m_stop.request_stop();
        m_stop = std::stop_source();
        m_next = std::move(job);
        m_nextNumber = ++m_started;
    }
    m_changed.notify_one();
    if (!m_thread.joinable())
        m_thread = std::thread([this] { work(); });
}

void BackgroundJobs::forget() {
    const std::lock_guard lock(m_mutex);
    m_stop.request_stop();
    m_next = nullptr;
    ++m_started;
}

void BackgroundJobs::work() {
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_isEnding || m_next; });
        if (m_isEnding)
            return;
        const auto job = std::exchange(m_next, nullptr);
        const auto number = m_nextNumber;
        const auto stop = m_stop.get_token();
        lock.unlock();
        auto delivery = job(stop);
        QMetaObject::invokeMethod(
            &m_context,
            [this, number, delivery = std::move(delivery)] {
                if (number == m_started)
                    delivery();
            },
            Qt::QueuedConnection);
    }
}

} // namespace sweeply
