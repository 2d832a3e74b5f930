// ps [OPTION...]
//
// Prints the number and the whole path of every process that this user may know, one a line. What the Mac's own tool
// can be asked besides is accepted and makes no difference.
#include "platform/ProcessList.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::puts("usage: ps\nPrints the number and the whole path of every process that this user may know.");
            return 0;
        }
    }
    std::puts("  PID COMM");
    for (auto& process : sweeply::runningProcesses()) {
        // A name that holds a line break must not pass for another process.
        std::ranges::replace(process.executable, '\n', '?');
        std::printf("%5d %s\n", static_cast<int>(process.pid), process.executable.c_str());
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
