#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

/// The system log, as free-text lines without levels.
///
/// Lines are raw: strangers' names are made harmless where a line is written, once. Any thread may log at any time; a
/// line that cannot be written is lost in silence.
class SystemLog {
  public:
    virtual ~SystemLog() = default;
    virtual void log(std::string_view line) = 0;
};

/// Several texts in parentheses with commas between them.
[[nodiscard]] std::string listForLog(const std::vector<std::string>& texts);

/// Writes to the host's system log under this program's name, every line escaped for display. One for a process: the
/// name is the C library's to keep.
class SyslogLog final : public SystemLog {
  public:
    enum class Copy { None, StandardError };

    explicit SyslogLog(Copy copy = Copy::None);
    ~SyslogLog() override;
    SyslogLog(const SyslogLog&) = delete;
    SyslogLog& operator=(const SyslogLog&) = delete;

    void log(std::string_view line) override;

  private:
    const Copy m_copy;
};

} // namespace sweeply
