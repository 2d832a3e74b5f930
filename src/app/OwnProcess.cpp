#include "app/OwnProcess.h"

#include "platform/Localization.h"
#include "platform/Process.h"
#include "platform/SystemLog.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr const char* kKill = "kill -15 $1";
#if defined(__APPLE__)
constexpr const char* kRestart = "kill -15 $1 \n open \"$2\"";
#else
constexpr const char* kRestart = "kill -15 $1 \n \"$2\" </dev/null >/dev/null 2>&1 &";
#endif

/// Our own handler would only ask for a stop, which is what did not help.
void runScript(const char* script, std::vector<std::string> more) {
    std::signal(SIGTERM, SIG_DFL);
    std::vector<std::string> arguments{"-c", script, "", formatText("%i", {::getpid()})};
    arguments.insert(arguments.end(), more.begin(), more.end());
    ProcessOptions options;
    options.output = OutputTo::Inherit;
    (void)runProcess("/bin/sh", arguments, options); // we do not live to see how it went
}

} // namespace

std::string ownProgram() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::string besideProgram(const char* folder) {
    const std::filesystem::path program = ownProgram();
    return program.empty() ? std::string() : (program.parent_path().parent_path() / folder / "sweeply").string();
}

void killOurselves(const std::string& bundlePath, SystemLog& log) {
    log.log("Application is going to kill ourselves");
    runScript(kKill, {});
    log.log(formatText("Error: %@ should have been terminated, but we are still running", {bundlePath}));
    std::abort();
}

void restartOurselves(const std::string& bundlePath, SystemLog& log) {
    log.log("Application is going to restart ourselves");
    runScript(kRestart, {bundlePath});
    log.log(formatText("ERROR: %@ should have been terminated, but we are still running", {bundlePath}));
    std::abort();
}

} // namespace sweeply
