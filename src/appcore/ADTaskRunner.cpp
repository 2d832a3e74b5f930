#include "appcore/ADTaskRunner.h"

#include "platform/Localization.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"
#include "platform/ToolTable.h"

namespace sweeply {

std::optional<std::string> ADTaskRunner::getOutput(std::string_view tool, const Arguments& arguments,
                                                   bool suppressErrorOutput,
                                                   const std::vector<int>& inheritedDescriptors) const {
    ProcessOptions options;
    options.inheritedDescriptors = inheritedDescriptors;
    options.errors = suppressErrorOutput ? OutputTo::Discard : OutputTo::Inherit;
    auto result = run(tool, arguments, options);
    return result ? std::optional(std::move(result->output)) : std::nullopt;
}

Result<ProcessResult> ADTaskRunner::run(std::string_view tool, const Arguments& arguments) const {
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    return run(tool, arguments, options);
}

Result<ProcessResult> ADTaskRunner::run(std::string_view tool, const Arguments& arguments,
                                        const ProcessOptions& options) const {
    const auto program = m_tools.programFor(tool);
    if (!program)
        return Failure(program.error());
    auto result = runProcess(*program, arguments, options);
    if (!result)
        logFailure(tool, arguments, result.error().reason);
    return result;
}

std::optional<int> ADTaskRunner::launchTaskAndGetTermStatusWithCmd(std::string_view tool,
                                                                   const Arguments& arguments) const {
    ProcessOptions options;
    options.output = OutputTo::Inherit;
    const auto result = m_tools.programFor(tool).and_then(
        [&](const std::string& program) { return runProcess(program, arguments, options); });
    if (!result) {
        logFailure(tool, arguments, result.error().reason);
        return std::nullopt;
    }
    constexpr int kSignalBase = 128;
    return result->signal != 0 ? kSignalBase + result->signal : result->exitStatus;
}

void ADTaskRunner::logFailure(std::string_view tool, const Arguments& arguments, const std::string& reason) const {
    m_log.log(formatText("Error while invoking command %@ with args %@ : %@", {tool, listForLog(arguments), reason}));
}

} // namespace sweeply
