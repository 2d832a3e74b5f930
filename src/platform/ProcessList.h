#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace sweeply {

/// A process of this machine and the file that it runs, a host path with every link resolved.
struct RunningProcess {
    pid_t pid = 0;
    std::string executable;
};

/// Every process whose file this user may know. One whose file is gone by now is listed with its old path.
[[nodiscard]] std::vector<RunningProcess> runningProcesses();

/// Does `executable` lie at `path`, or anywhere in the folder `path`?
[[nodiscard]] bool runsFrom(const std::string& executable, const std::string& path);

} // namespace sweeply
