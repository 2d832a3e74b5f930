#include "ui/QtMainThread.h"

#include <QThread>
#include <algorithm>
#include <utility>

namespace sweeply {

bool QtMainThread::isMainThread() const { return QThread::currentThread() == m_context.thread(); }

void QtMainThread::runAndWait(const std::function<void()>& call) {
    if (isMainThread()) {
        call();
        return;
    }
    std::unique_lock lock(m_mutex);
    if (!m_isClosed) {
        Turn turn{call};
        m_turns.push_back(&turn);
        QMetaObject::invokeMethod(
            &m_context, [this] { takeTurn(); }, Qt::QueuedConnection);
        m_changed.wait(lock, [&] {
            return turn.state == Turn::State::Done || (m_isClosed && turn.state == Turn::State::Waiting);
        });
        if (turn.state == Turn::State::Done)
            return;
        std::erase(m_turns, &turn);
    }
    lock.unlock();
    const std::lock_guard alone(m_workersCalls);
    call();
}

void QtMainThread::takeTurn() {
    std::unique_lock lock(m_mutex);
    if (m_turns.empty())
        return; // its worker made it itself
    auto& turn = *m_turns.front();
    m_turns.pop_front();
    turn.state = Turn::State::Running;
    lock.unlock();
    turn.call();
    lock.lock();
    turn.state = Turn::State::Done;
    m_changed.notify_all();
}

void QtMainThread::runLater(std::function<void()> call) {
    QMetaObject::invokeMethod(&m_context, std::move(call), Qt::QueuedConnection);
}

void QtMainThread::close() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_changed.notify_all();
}

void QtMainThread::open() {
    const std::lock_guard lock(m_mutex);
    m_isClosed = false;
}

} // namespace sweeply
