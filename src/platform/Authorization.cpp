#include "platform/Authorization.h"

#include "platform/Process.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr int kSignalBase = 128;

int statusOf(const ProcessResult& result) {
    return result.signal != 0 ? kSignalBase + result.signal : result.exitStatus;
}

/// The first line of what sudo said, without its own name in front.
std::string reasonIn(std::string_view text) {
    constexpr std::string_view kPrefix = "sudo: ";
    text = text.substr(0, text.find('\n'));
    if (text.starts_with(kPrefix))
        text.remove_prefix(kPrefix.size());
    return text.empty() ? "the password was not accepted" : std::string(text);
}

} // namespace

SudoSetting SudoSetting::ofThisProcess() {
    SudoSetting setting;
    setting.isRoot = ::geteuid() == 0;
    const char* askPass = std::getenv("SUDO_ASKPASS");
    setting.hasAskPass = askPass != nullptr && *askPass != '\0';
    setting.hasTerminal = ::isatty(STDIN_FILENO) == 1 && ::isatty(STDERR_FILENO) == 1;
    return setting;
}

AuthorizationResult SudoAuthorization::create() {
    if (m_setting.isRoot)
        return {};
    for (const std::string& folder : m_setting.folders) {
        std::string candidate = folder + "/sudo";
        if (::access(candidate.c_str(), X_OK) == 0) {
            m_sudo = std::move(candidate);
            return {};
        }
    }
    m_sudo.clear();
    return tl::unexpected(AuthorizationFailure{ENOENT, "sudo is not installed"});
}

AuthorizationResult SudoAuthorization::copyRights() {
    if (m_setting.isRoot)
        return {};
    std::vector<std::string> arguments{"-v"};
    ProcessOptions options;
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Capture;
    if (m_setting.hasAskPass) {
        arguments.insert(arguments.begin(), "-A");
    } else if (m_setting.hasTerminal) {
        options.input = InputFrom::Inherit;
        options.errors = OutputTo::Inherit; // where a person reads that the password was wrong
    } else {
        arguments.insert(arguments.begin(), "-n");
    }
    const auto result = runProcess(m_sudo, arguments, options);
    if (!result)
        return tl::unexpected(AuthorizationFailure{ENOEXEC, result.error().message()});
    if (!result->succeeded())
        return tl::unexpected(AuthorizationFailure{statusOf(*result), reasonIn(result->errors)});
    m_keepsWorkingDirectory = keepsWorkingDirectory();
    return {};
}

bool SudoAuthorization::keepsWorkingDirectory() const {
    // Tried in the folder that holds sudo, the last place where anybody's setting would lead.
    const UniqueFd folder(::open(m_sudo.substr(0, m_sudo.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0)
        return false;
    ProcessOptions options;
    options.workingDirectory = folder.get();
    options.errors = OutputTo::Discard;
    const auto listed = runProcess(m_sudo, {"-n", "--", "/bin/ls", "-id", "."}, options);
    return listed && listed->succeeded() && listed->output == std::to_string(status.st_ino) + " .\n";
}

void SudoAuthorization::giveBack() {
    if (m_setting.isRoot || m_sudo.empty())
        return;
    ProcessOptions options;
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Discard;
    // Nothing is lost when this fails: sudo forgets by itself after some minutes.
    static_cast<void>(runProcess(m_sudo, {"-k"}, options));
}

Result<int> SudoAuthorization::run(const std::string& program, const std::vector<std::string>& arguments,
                                   int workingDirectory) {
    ProcessOptions options;
    options.workingDirectory = workingDirectory;
    options.output = OutputTo::Discard;
    if (m_setting.isRoot) {
        const auto result = runProcess(program, arguments, options);
        return result.map(statusOf);
    }
    if (workingDirectory >= 0 && !m_keepsWorkingDirectory)
        return Failure(Error{ErrorKind::Unavailable, m_sudo, "it does not keep the working directory"});

    std::vector<std::string> command{"-n", "--", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const auto result = runProcess(m_sudo, command, options);
    if (!result)
        return Failure(result.error());
    // 1 is also what sudo itself ends with when it does not run the program. Its rights tell the two apart.
    if (result->signal == 0 && result->exitStatus == 1) {
        ProcessOptions quiet;
        quiet.output = OutputTo::Discard;
        quiet.errors = OutputTo::Discard;
        const auto rights = runProcess(m_sudo, {"-n", "-v"}, quiet);
        if (!rights || !rights->succeeded())
            return Failure(Error{ErrorKind::PermissionDenied, program, "the administrator rights have lapsed"});
    }
    return statusOf(*result);
}

} // namespace sweeply
