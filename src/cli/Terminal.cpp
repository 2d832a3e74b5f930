#include "cli/Terminal.h"

#include "cli/Interrupt.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace sweeply {

Terminal Terminal::ofThisProcess() {
    return {::isatty(STDIN_FILENO) == 1, ::isatty(STDOUT_FILENO) == 1, ::isatty(STDERR_FILENO) == 1};
}

std::size_t Terminal::width() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::optional<std::string> readLine() {
    // The interrupt may be delivered to another thread, so it does not end a read here: look for it now and then.
    constexpr int kStepMilliseconds = 100;
    std::string line;
    while (!interrupt::wasRequested()) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (::poll(&input, 1, kStepMilliseconds) <= 0)
            continue;
        char character = 0;
        if (::read(STDIN_FILENO, &character, 1) != 1)
            return line.empty() ? std::nullopt : std::optional(line);
        if (character == '\n')
            return line;
        line += character;
    }
    return std::nullopt;
}

} // namespace sweeply
