// launchctl load|unload [-w] [-F] PATH... | list [LABEL] | remove LABEL
//
// Keeps launch agents as units of the user's own service manager: a service for the program and a path unit for what it
// waits for.
#include "platform/Process.h"
#include "tools/Complaint.h"
#include "tools/launchctl/Units.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <pwd.h>
#include <sstream>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace sweeply;
using launchctl::Job;

constexpr const char* kUsage = "usage: launchctl load|unload [-w] [-F] PATH...\n"
                               "       launchctl list [LABEL]\n"
                               "       launchctl remove LABEL\n"
                               "Keeps launch agents as units of the user's own service manager.\n";

int complain(const std::string& text) { return printComplaint("launchctl: " + text); }

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return home;
    const passwd* user = ::getpwuid(::getuid());
    return user ? user->pw_dir : "/";
}

fs::path unitsFolder() {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    return fs::path(configured && *configured == '/' ? std::string(configured) : homeFolder() + "/.config") /
           "systemd/user";
}

/// Where desktops and people mount volumes.
std::vector<std::string> mountFolders() {
    const passwd* user = ::getpwuid(::getuid());
    const std::string name = user ? user->pw_name : "";
    return {"/run/media/" + name, "/media/" + name, "/media", "/mnt"};
}

/// What systemctl said when it failed; nothing when it did its work.
std::optional<std::string> systemctl(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "--user");
    ProcessOptions options;
    options.output = OutputTo::Discard;
    options.errors = OutputTo::Capture;
    const auto ended = runProcess("/usr/bin/systemctl", arguments, options);
    if (!ended)
        return "there is no service manager on this machine";
    if (ended->succeeded())
        return std::nullopt;
    const std::string line = ended->errors.substr(0, ended->errors.find('\n'));
    return line.empty() ? "the service manager refused" : line;
}

bool write(const fs::path& path, const std::string& contents) {
    const fs::path fresh = path.string() + ".new";
    std::ofstream file(fresh, std::ios::binary);
    file << contents;
    file.close();
    std::error_code error;
    if (file)
        fs::rename(fresh, path, error);
    return file && !error;
}

void removeUnits(const std::string& name) {
    std::error_code ignored;
    for (const char* kind : {".path", ".service"})
        fs::remove(unitsFolder() / (name + kind), ignored);
}

std::string unitThatWaits(const Job& job, const std::string& name) {
    return name + (job.watchedPaths.empty() && !job.startsOnMount ? ".service" : ".path");
}

tl::expected<Job, std::string> jobAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    if (!file || !(bytes << file.rdbuf()))
        return tl::unexpected("Couldn't stat(\"" + path + "\"): " + std::strerror(errno));
    const auto configuration = plist::parse(bytes.str());
    if (!configuration)
        return tl::unexpected("no plist was returned for: " + path);
    auto job = launchctl::jobIn(*configuration);
    if (!job)
        return tl::unexpected(job.error() + ": " + path);
    return job;
}

int load(const std::string& path) {
    const auto job = jobAt(path);
    if (!job)
        return complain(job.error());
    const std::string name = launchctl::unitName(job->label);
    std::error_code error;
    fs::create_directories(unitsFolder(), error);
    if (!write(unitsFolder() / (name + ".service"), launchctl::serviceUnit(*job)) ||
        !write(unitsFolder() / (name + ".path"), launchctl::pathUnit(*job, mountFolders()))) {
        removeUnits(name);
        return complain(unitsFolder().string() + ": could not be written");
    }
    const std::string waiting = unitThatWaits(*job, name);
    auto failure = systemctl({"daemon-reload"});
    if (!failure && waiting.ends_with(".path"))
        failure = systemctl({"enable", "--now", waiting});
    if (!failure && job->runsAtLoad)
        failure = systemctl({"enable", "--now", name + ".service"});
    if (!failure)
        return 0;
    removeUnits(name);
    return complain(job->label + ": " + *failure);
}

int removeLabel(const std::string& label) {
    const std::string name = launchctl::unitName(label);
    std::error_code error;
    if (!fs::exists(unitsFolder() / (name + ".service"), error)) {
        complain("Error unloading: " + label);
        return 0; // as the Mac's own tool
    }
    const auto failure = systemctl({"disable", "--now", name + ".path", name + ".service"});
    removeUnits(name);
    (void)systemctl({"daemon-reload"});
    return failure ? complain(label + ": " + *failure) : 0;
}

int list(const std::vector<std::string>& labels) {
    if (!labels.empty())
        return systemctl({"is-active", "--quiet", launchctl::unitName(labels[0]) + ".path"}) ? 1 : 0;
    std::puts("PID\tStatus\tLabel");
    std::vector<std::string> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(unitsFolder(), error)) {
        if (entry.path().extension() == ".service" && !launchctl::labelOf(entry.path().stem().string()).empty())
            found.push_back(launchctl::labelOf(entry.path().stem().string()));
    }
    std::ranges::sort(found);
    for (const auto& label : found)
        std::printf("-\t0\t%s\n", label.c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string command = arguments.empty() ? std::string() : arguments[0];
    if (command == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!arguments.empty())
        arguments.erase(arguments.begin());
    if (command == "list")
        return list(arguments);
    std::erase_if(arguments, [](const std::string& word) { return word == "-w" || word == "-F"; });
    if ((command != "load" && command != "unload" && command != "remove") || arguments.empty()) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    int status = 0;
    for (const auto& argument : arguments) {
        int outcome = 0;
        if (command == "load") {
            outcome = load(argument);
        } else if (command == "remove") {
            outcome = removeLabel(argument);
        } else {
            const auto job = jobAt(argument);
            outcome = job ? removeLabel(job->label) : complain(job.error());
        }
        status = std::max(status, outcome);
    }
    return status;
}
