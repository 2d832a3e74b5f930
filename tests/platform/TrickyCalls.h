#pragma once

#include "platform/SystemCalls.h"

#include <functional>
#include <mutex>

namespace sweeply {

/// The system calls that change a disk, of which a test may have any fail or be the last.
class TrickyCalls final : public SystemCalls {
  public:
    /// Told of each call's name; 0 has it made, anything else is the error that it fails with. One call at a time.
    std::function<int(const char*)> whenCalled;

  private:
    int before(const char* call) override {
        const std::lock_guard lock(m_mutex);
        return whenCalled ? whenCalled(call) : 0;
    }

    std::mutex m_mutex;
};

} // namespace sweeply
