#pragma once

#include <string>

namespace sweeply {

class SystemLog;

/// The program that runs: an absolute path of this machine, empty where the system does not tell.
[[nodiscard]] std::string ownProgram();

/// Our folder in "libexec" or "share" beside the program's own, where what came with it lies: an absolute path of this
/// machine.
[[nodiscard]] std::string besideProgram(const char* folder);

/// Ends this process by a signal from outside, whatever its threads are doing. Does not return.
[[noreturn]] void killOurselves(const std::string& bundlePath, SystemLog& log);

/// The same, and starts the program at `bundlePath`, a path of this machine, again.
[[noreturn]] void restartOurselves(const std::string& bundlePath, SystemLog& log);

} // namespace sweeply
