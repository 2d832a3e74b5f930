#include "engine/RunRequests.h"

#include "engine/EngineEvents.h"
#include "platform/NotificationCenter.h"

namespace sweeply {

void RunRequests::start() {
    m_stopping = false;
    m_paused = false;
    m_stopped = false;
    m_notifications.post(RunningContinued{});
}

void RunRequests::togglePause() {
    m_paused = !m_paused;
    if (m_paused)
        m_notifications.post(RunningPaused{});
    else
        m_notifications.post(RunningContinued{});
}

void RunRequests::stop() {
    m_stopped = true;
    m_paused = false;
    m_stopping = true;
    m_notifications.post(RunningStopped{});
}

} // namespace sweeply
