#pragma once

#include "platform/Error.h"

#include <csignal>
#include <cstddef>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace sweeply {

/// Where a child's standard output or standard error goes.
enum class OutputTo {
    Inherit, ///< to the same place as ours
    Discard,
    Capture, ///< into the result
};

enum class InputFrom {
    Nothing, ///< reads end of file at once
    Inherit, ///< for a tool that asks the person at the terminal
};

struct ProcessOptions {
    /// Directory descriptor in which the child starts, -1 for ours. Not owned; one opened for its identity only will
    /// do.
    int workingDirectory = -1;
    /// Descriptors above 2 that the child keeps, under the same numbers. No others of ours reach it.
    std::vector<int> inheritedDescriptors;
    OutputTo output = OutputTo::Capture;
    OutputTo errors = OutputTo::Inherit;
    InputFrom input = InputFrom::Nothing;
    /// Set on top of our own environment.
    std::vector<std::pair<std::string, std::string>> environment;
    /// Bytes captured from each of the two streams before the child is killed and the run fails as TooLarge.
    std::size_t captureLimit = std::size_t{256} << 20U;
    /// Sends the child a signal while its output is captured. SIGKILL ends it, and the run fails as Stopped; after any
    /// other one it ends as it likes, which is a result.
    std::stop_token stop{};
    int stopSignal = SIGKILL;
};

/// How a child ended and what it wrote.
struct ProcessResult {
    int exitStatus = 0; ///< meaningless when a signal ended the child
    int signal = 0;     ///< that ended the child, or 0
    std::string output;
    std::string errors;

    [[nodiscard]] bool succeeded() const { return signal == 0 && exitStatus == 0; }
};

/// Runs the program at the absolute host path `program` and waits for its end. No shell is involved: every argument
/// arrives as it is, and the program's own name is not among `arguments`.
///
/// Fails when the program cannot be started (NotFound, PermissionDenied) or writes more than it may (TooLarge); a
/// program that ran and was unhappy is a result. The child belongs to our terminal: the interrupt key reaches it as
/// well as us, and it then ends with `signal` set. Signals blocked or ignored by us are not so in the child.
///
/// Thread-safe: each call has its own child, and no child sees another one's pipes.
[[nodiscard]] Result<ProcessResult> runProcess(const std::string& program, const std::vector<std::string>& arguments,
                                               const ProcessOptions& options = {});

} // namespace sweeply
