#include "platform/ProcessList.h"

#include <charconv>
#include <filesystem>
#include <string_view>

namespace sweeply {

std::vector<RunningProcess> runningProcesses() {
    constexpr std::string_view kGone = " (deleted)";
    std::vector<RunningProcess> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        pid_t pid = 0;
        const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (failure != std::errc() || end != name.data() + name.size())
            continue;
        std::error_code unreadable;
        std::string executable = std::filesystem::read_symlink(entry.path() / "exe", unreadable).string();
        if (unreadable || executable.empty())
            continue; // the kernel's own, or another user's
        if (executable.ends_with(kGone))
            executable.resize(executable.size() - kGone.size());
        found.push_back({pid, std::move(executable)});
    }
    return found;
}

bool runsFrom(const std::string& executable, const std::string& path) {
    return !path.empty() && path != "/" &&
           (executable == path || (executable.starts_with(path) && executable[path.size()] == '/'));
}

} // namespace sweeply
