#include "platform/SystemLog.h"

#include "formats/DisplayEscapes.h"

#include <syslog.h>
#include <unistd.h>

namespace sweeply {

std::string listForLog(const std::vector<std::string>& texts) {
    std::string list;
    for (const auto& text : texts)
        list += (list.empty() ? "" : ", ") + text;
    return "(" + list + ")";
}

SyslogLog::SyslogLog(Copy copy) : m_copy(copy) { openlog("sweeply", LOG_PID, LOG_USER); }

SyslogLog::~SyslogLog() { closelog(); }

void SyslogLog::log(std::string_view line) {
    const std::string escaped = escapedForDisplay(line);
    syslog(LOG_NOTICE, "%s", escaped.c_str());
    if (m_copy == Copy::None)
        return;
    // One call for the whole line, so that the lines of two threads do not mix.
    const std::string whole = escaped + '\n';
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, whole.data(), whole.size());
}

} // namespace sweeply
