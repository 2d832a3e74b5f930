#include "engine/LoneWork.h"

#include "platform/MainThread.h"

#include <utility>

namespace sweeply {

void LoneWork::start(Work work, std::function<void()> ended) {
    stopAndJoin(); // the last one's thread may still be on its way out
    m_isRunning = true;
    m_thread = std::jthread([this, work = std::move(work), ended = std::move(ended)](const std::stop_token& stop) {
        work(stop);
        m_mainThread.runAndWait([&] {
            m_isRunning = false;
            ended();
        });
    });
}

void LoneWork::stopAndJoin() {
    m_thread.request_stop();
    if (m_thread.joinable())
        m_thread.join();
}

} // namespace sweeply
