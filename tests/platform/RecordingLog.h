#pragma once

#include "platform/SystemLog.h"

#include <mutex>
#include <string>
#include <vector>

namespace sweeply {

/// Keeps what was logged. Thread-safe.
class RecordingLog final : public SystemLog {
  public:
    void log(std::string_view line) override {
        std::lock_guard lock(m_mutex);
        m_lines.emplace_back(line);
    }
    std::vector<std::string> lines() const {
        std::lock_guard lock(m_mutex);
        return m_lines;
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace sweeply
