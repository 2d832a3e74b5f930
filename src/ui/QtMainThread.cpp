#include "ui/QtMainThread.h"

#include <QThread>
#include <utility>

namespace sweeply {

bool QtMainThread::isMainThread() const { return QThread::currentThread() == m_context.thread(); }

void QtMainThread::runAndWait(const std::function<void()>& call) {
    if (isMainThread())
        call();
    else
        QMetaObject::invokeMethod(&m_context, call, Qt::BlockingQueuedConnection);
}

void QtMainThread::runLater(std::function<void()> call) {
    QMetaObject::invokeMethod(&m_context, std::move(call), Qt::QueuedConnection);
}

} // namespace sweeply
