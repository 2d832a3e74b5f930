#pragma once

#include <string>

namespace sweeply {

class SystemLog;

/// Ends this process by a signal from outside, whatever its threads are doing. Does not return.
[[noreturn]] void killOurselves(const std::string& bundlePath, SystemLog& log);

/// The same, and starts the program at `bundlePath`, a path of this machine, again.
[[noreturn]] void restartOurselves(const std::string& bundlePath, SystemLog& log);

} // namespace sweeply
