#pragma once

#include "platform/Error.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class SystemLog;
class ToolTable;
struct ProcessOptions;
struct ProcessResult;

/// Runs a Mac's command-line tools, named by their paths there, as the user. Thread-safe.
class ADTaskRunner final {
  public:
    using Arguments = std::vector<std::string>;

    /// Both outlive this.
    ADTaskRunner(const ToolTable& tools, SystemLog& log) : m_tools(tools), m_log(log) {}

    /// Everything the tool writes to its standard output, whatever its exit status. Nothing when there is no such tool
    /// (silently) or it cannot be run to its end (logged). Standard error goes where ours goes unless suppressed. The
    /// tool has the inherited descriptors under the same numbers, for arguments such as "/dev/fd/5".
    [[nodiscard]] std::optional<std::string> getOutput(std::string_view tool, const Arguments& arguments,
                                                       bool suppressErrorOutput = false,
                                                       const std::vector<int>& inheritedDescriptors = {}) const;

    /// What the tool writes, with its standard error apart, and how it ended. An error when there is no such tool
    /// (Unavailable) or it cannot be run to its end (logged).
    [[nodiscard]] Result<ProcessResult> run(std::string_view tool, const Arguments& arguments) const;

    /// The tool's exit status, 128 and more when a signal ended it; nothing when it could not be run (logged). What it
    /// writes goes where ours goes.
    std::optional<int> launchTaskAndGetTermStatusWithCmd(std::string_view tool, const Arguments& arguments) const;

  private:
    [[nodiscard]] Result<ProcessResult> run(std::string_view tool, const Arguments& arguments,
                                            const ProcessOptions& options) const;
    void logFailure(std::string_view tool, const Arguments& arguments, const std::string& reason) const;

    const ToolTable& m_tools;
    SystemLog& m_log;
};

} // namespace sweeply
