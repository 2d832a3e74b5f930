#pragma once

#include "platform/MainThread.h"

#include <QObject>

namespace sweeply {

/// The thread of Qt's event loop. Made on that thread.
class QtMainThread final : public MainThread {
  public:
    void runAndWait(const std::function<void()>& call) override;
    void runLater(std::function<void()> call) override;
    [[nodiscard]] bool isMainThread() const override;

  private:
    QObject m_context; ///< lives on the main thread; calls handed to it are dropped when it goes
};

} // namespace sweeply
