#pragma once

#include <functional>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace sweeply {

/// The objects that --json prints. Keys keep their order; texts are valid UTF-8.
using Json = nlohmann::ordered_json;

/// Where one run of a command on one target leaves what it has to say besides its text: with whoever runs it, who alone
/// knows whether there are others. Text for people goes to standard output as it comes.
struct RunOutput {
    /// Takes the one object that --json prints. Main thread.
    std::function<void(const Json&)> object;
    /// Takes a line about something that went wrong, not yet escaped. Any thread.
    std::function<void(std::string_view)> complaint;
    /// What progress begins with, where there are several runs; escaped.
    std::string place = {};
};

/// Remembers the last of several complaints. Thread-safe.
class LastComplaint final {
  public:
    void set(std::string_view text) {
        const std::lock_guard lock(m_mutex);
        m_text = text;
    }
    [[nodiscard]] std::string text() const {
        const std::lock_guard lock(m_mutex);
        return m_text;
    }

  private:
    mutable std::mutex m_mutex;
    std::string m_text;
};

} // namespace sweeply
