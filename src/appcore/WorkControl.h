#pragma once

#include <stop_token>

namespace sweeply {

/// How a worker learns that the person at the screen wants it to stop or to pause. Thread-safe.
class WorkControl {
  public:
    virtual ~WorkControl() = default;

    [[nodiscard]] virtual bool stopped() const = 0;
    [[nodiscard]] virtual bool ifPaused() const = 0;
    /// Returns when work may go on, or at once after a stop.
    virtual void waitWhilePaused() = 0;
    /// The token of the current run: asked to stop exactly when stopped() turns true. For waiting on other things.
    [[nodiscard]] virtual std::stop_token stopToken() const = 0;
};

} // namespace sweeply
