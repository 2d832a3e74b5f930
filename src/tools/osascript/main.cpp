// osascript -e SCRIPT
//
// Runs one kind of script: one that tells an application to quit, within a time.
//   tell application "PATH"
//   with timeout of SECONDS seconds
//   quit
//   ...
// Every process of this user that runs from PATH is asked to end, and is waited for.
#include "platform/ProcessList.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace sweeply;

// As the Mac's scripts number them.
constexpr int kTimedOut = -1712;
constexpr int kSyntax = -2741;
constexpr int kNotPermitted = -1743;

int fail(const char* text, int number) {
    std::fprintf(stderr, "0:0: execution error: %s (%d)\n", text, number);
    return 1;
}

struct Request {
    std::string path;
    int seconds = 0;
};

std::optional<Request> parse(std::string_view script) {
    constexpr std::string_view kTell = "tell application \"";
    constexpr std::string_view kTimeout = "with timeout of ";
    const auto tell = script.find(kTell);
    if (tell == std::string_view::npos)
        return std::nullopt;
    Request request;
    std::size_t at = tell + kTell.size();
    for (; at < script.size() && script[at] != '"'; ++at) {
        if (script[at] == '\\' && ++at == script.size())
            return std::nullopt;
        request.path += script[at];
    }
    const auto timeout = script.find(kTimeout, at);
    if (timeout == std::string_view::npos || script.find("\nquit\n", timeout) == std::string_view::npos)
        return std::nullopt;
    const char* digits = script.data() + timeout + kTimeout.size();
    if (std::from_chars(digits, script.data() + script.size(), request.seconds).ec != std::errc())
        return std::nullopt;
    return request;
}

/// Asks by descriptor: a number could be another process's by the time the signal is sent.
int quit(const Request& request) {
    std::vector<UniqueFd> waiting;
    for (const auto& process : runningProcesses()) {
        if (!runsFrom(process.executable, request.path) || process.pid == ::getpid())
            continue;
        UniqueFd handle(static_cast<int>(::syscall(SYS_pidfd_open, process.pid, 0)));
        if (!handle)
            continue; // ended meanwhile
        if (::syscall(SYS_pidfd_send_signal, handle.get(), SIGTERM, nullptr, 0) != 0) {
            if (errno == EPERM)
                return fail("Not permitted to quit the application.", kNotPermitted);
            continue;
        }
        waiting.push_back(std::move(handle));
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(request.seconds);
    for (const auto& handle : waiting) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd ended{handle.get(), POLLIN, 0};
        if (::poll(&ended, 1, static_cast<int>(std::max<long long>(left.count(), 0))) != 1)
            return fail("AppleEvent timed out.", kTimedOut);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 1 && arguments[0] == "--help") {
        std::puts("usage: osascript -e SCRIPT\nRuns a script that tells an application to quit within a time.");
        return 0;
    }
    if (arguments.size() != 2 || arguments[0] != "-e") {
        std::fputs("usage: osascript -e SCRIPT\n", stderr);
        return 2;
    }
    const auto request = parse(arguments[1]);
    return request ? quit(*request) : fail("Only a script that tells an application to quit can be run here.", kSyntax);
}
