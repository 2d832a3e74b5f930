#include "platform/SystemLog.h"

#include <syslog.h>
#include <unistd.h>

namespace sweeply {

std::string escapedForLog(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte == '\n')
            result += "\\n";
        else if (byte < 0x20 || byte == 0x7F)
            result.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0xF]);
        else
            result += character;
    }
    return result;
}

std::string escapedForLog(const std::vector<std::string>& texts) {
    std::string list = "(";
    for (const auto& text : texts) {
        list += list.size() > 1 ? ", " : "";
        list += escapedForLog(text);
    }
    return list + ")";
}

SyslogLog::SyslogLog(Copy copy) : m_copy(copy) { openlog("sweeply", LOG_PID, LOG_USER); }

SyslogLog::~SyslogLog() { closelog(); }

void SyslogLog::log(std::string_view line) {
    const std::string escaped = escapedForLog(line);
    syslog(LOG_NOTICE, "%s", escaped.c_str());
    if (m_copy == Copy::None)
        return;
    // One call for the whole line, so that the lines of two threads do not mix.
    const std::string whole = escaped + '\n';
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, whole.data(), whole.size());
}

} // namespace sweeply
