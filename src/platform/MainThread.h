#pragma once

#include <functional>

namespace sweeply {

/// Where everything that a person sees is changed. Workers hand it calls; it runs one at a time.
class MainThread {
  public:
    virtual ~MainThread() = default;

    /// Runs `call` as the main thread's own and returns when it has ended. From the main thread itself: at once.
    virtual void runAndWait(const std::function<void()>& call) = 0;
    /// Hands `call` over and returns; calls run in the order in which they came. Also from the main thread: it never
    /// runs before the caller is done.
    virtual void runLater(std::function<void()> call) = 0;
    [[nodiscard]] virtual bool isMainThread() const = 0;
};

} // namespace sweeply
