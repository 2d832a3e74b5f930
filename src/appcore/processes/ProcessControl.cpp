#include "appcore/processes/ProcessControl.h"

#include "appcore/ADTaskRunner.h"
#include "appcore/PrivilegedExecution.h"
#include "formats/DisplayEscapes.h"
#include "platform/Alerts.h"
#include "platform/FileManager.h"
#include "platform/Localization.h"
#include "platform/MainThread.h"
#include "platform/Process.h"
#include "platform/ProcessList.h"
#include "platform/StringExtras.h"
#include "platform/SystemLog.h"
#include "platform/ToolTable.h"

#include <charconv>
#include <csignal>
#include <sstream>
#include <thread>

namespace sweeply {

namespace {

constexpr int kScriptFailed = 3;

/// Inside double quotes of a script.
std::string escapedForScript(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '"' || c == '\\')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

/// The number in parentheses at the end of what the script's tool says.
int errorNumberIn(const std::string& errors) {
    const auto open = errors.rfind('(');
    int number = 0;
    if (open == std::string::npos ||
        std::from_chars(errors.data() + open + 1, errors.data() + errors.size(), number).ec != std::errc())
        return kScriptFailed;
    return number;
}

/// Each name once, one a line.
std::string namesOf(const std::vector<ProcessControl::Application>& applications) {
    std::string names;
    std::string last;
    for (const auto& application : applications) {
        if (application.name != last)
            names += escapedForDisplay(application.name) + "\n";
        last = application.name;
    }
    return names;
}

} // namespace

std::vector<std::string> ProcessControl::getPSList() const {
    const ADTaskRunner runner(m_services.tools, m_services.log);
    std::istringstream output(runner.getOutput("/bin/ps", {"-x", "-a", "-opid", "-ocomm"}).value_or(std::string()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);)
        lines.push_back(std::move(line));
    return lines;
}

std::vector<ProcessControl::Application>
ProcessControl::getApplicationsRunning(const std::vector<Application>& candidates) const {
    return getApplicationsRunning(candidates, getPSList());
}

std::vector<ProcessControl::Application>
ProcessControl::getApplicationsRunning(const std::vector<Application>& candidates,
                                       const std::vector<std::string>& lines) const {
    std::vector<Application> running;
    for (const auto& candidate : candidates) {
        // Processes are this machine's: what matters is where the application lies on it.
        const auto place =
            candidate.path.empty() ? Result<std::string>(std::string()) : m_services.files.hostPath(candidate.path);
        if (!place || place->empty())
            continue;
        for (const auto& line : lines) {
            const auto text = trimWhiteSpace(line);
            const auto space = text.find(' ');
            if (space == std::string_view::npos)
                continue;
            if (runsFrom(std::string(trimWhiteSpace(text.substr(space))), *place))
                running.push_back({candidate.name, candidate.path, std::string(text.substr(0, space))});
        }
    }
    return running;
}

int ProcessControl::quitApplication(const std::string& path, std::chrono::seconds timeout) const {
    const auto place = m_services.files.hostPath(path);
    const auto tool = m_services.tools.programFor("/usr/bin/osascript");
    if (!place || !tool)
        return kScriptFailed;
    const std::string script =
        formatText("tell application \"%@\"\nwith timeout of %i seconds\nquit\nend timeout\nend tell\n",
                   {escapedForScript(*place), timeout.count()});
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess(*tool, {"-e", script}, options);
    if (!ended) {
        m_services.log.log(formatText("Catched exception during app %@ quit: %@", {path, ended.error().reason}));
        return kScriptFailed;
    }
    return ended->succeeded() ? 0 : errorNumberIn(ended->errors);
}

bool ProcessControl::killApplicationByPid(const std::string& pid, int signal) const {
    const auto tool = m_services.tools.programFor("/bin/kill");
    if (!tool)
        return false;
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess(*tool, {formatText("-%i", {signal}), pid}, options);
    return !ended || ended->errors.find("Operation not permitted") == std::string::npos;
}

void ProcessControl::killApplicationAuthByPid(const std::string& pid, int signal) const {
    m_services.privileged.executeCommandWithPrivilidges("/bin/kill", {formatText("-%i", {signal}), pid}, -1);
}

bool ProcessControl::confirms(const char* title, const char* text, const std::vector<Application>& running,
                              const std::string& button) const {
    Alert alert;
    alert.title = localizedString(title);
    alert.text = localizedFormat(text, {namesOf(running)});
    alert.buttons = {localizedButton("Cancel"), button};
    std::size_t answer = 0;
    m_services.mainThread.runAndWait([&] { answer = m_services.alerts.runAlert(alert).button; });
    return answer == 1;
}

std::vector<ProcessControl::Application> ProcessControl::stillRunning(const std::vector<Application>& applications,
                                                                      WorkControl& control) const {
    constexpr std::chrono::milliseconds kLook{50};
    for (auto waited = std::chrono::milliseconds(0);; waited += kLook) {
        control.waitWhilePaused();
        auto running = getApplicationsRunning(applications);
        if (running.empty() || waited >= m_patience.toDie)
            return running;
        std::this_thread::sleep_for(kLook);
    }
}

bool ProcessControl::tryToStopApplications(const std::vector<Application>& applications, WorkControl& control) const {
    auto running = getApplicationsRunning(applications);
    if (running.empty())
        return true;
    if (control.stopped() ||
        !confirms(translatable("Some applications are running"),
                  translatable("The following applications are running:\n\n%@\nDo you want to quit them?"), running,
                  localizedButton("Quit")))
        return false;
    std::string last;
    for (const auto& application : running) {
        if (application.path != last) // all of its processes are asked at once
            quitApplication(application.path, m_patience.toQuit);
        last = application.path;
    }
    running = getApplicationsRunning(applications);
    if (running.empty())
        return true;
    if (!confirms(translatable("Couldn't quit some applications"),
                  translatable("The following applications failed to quit: \n\n%@\nDo you want to force quit?"),
                  running, localizedButton("Force quit")))
        return false;
    bool wasRefused = false;
    for (const auto& application : running) {
        if (m_services.privileged.isAuthorised())
            killApplicationAuthByPid(application.pid, SIGKILL);
        else
            wasRefused = !killApplicationByPid(application.pid, SIGKILL) || wasRefused;
    }
    running = stillRunning(applications, control);
    if (running.empty())
        return true;
    sayFailure(running, wasRefused);
    return false;
}

void ProcessControl::sayFailure(const std::vector<Application>& running, bool wasRefused) const {
    Alert alert;
    alert.title = localizedString("Sweeply couldn't quit some applications");
    alert.text =
        wasRefused && !m_services.privileged.isAuthorised()
            ? localizedString("Please try cleaning in authorized mode!\nClick on the lock below to enter your user "
                              "name and password.")
            : localizedFormat("The following applications failed to quit: \n\n%@\nTry to stop it manually and repeat "
                              "removing with Sweeply.",
                              {namesOf(running)});
    alert.buttons = {localizedButton("Ok")};
    m_services.mainThread.runAndWait([&] { m_services.alerts.runAlert(alert); });
}

} // namespace sweeply
