// launchctl load|unload [-w] [-F] PATH... | list [LABEL] | remove LABEL
//
// Keeps launch agents as units of the user's own service manager: a service for the program and a path unit for what it
// waits for.
#include "platform/UserUnits.h"
#include "tools/Complaint.h"
#include "tools/launchctl/Units.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <pwd.h>
#include <sstream>
#include <unistd.h>

namespace {

using namespace sweeply;
using launchctl::Job;

constexpr const char* kUsage = "usage: launchctl load|unload [-w] [-F] PATH...\n"
                               "       launchctl list [LABEL]\n"
                               "       launchctl remove LABEL\n"
                               "Keeps launch agents as units of the user's own service manager.\n";

int complain(const std::string& text) { return printComplaint("launchctl: " + text); }

/// Where desktops and people mount volumes.
std::vector<std::string> mountFolders() {
    const passwd* user = ::getpwuid(::getuid());
    const std::string name = user ? user->pw_name : "";
    return {"/run/media/" + name, "/media/" + name, "/media", "/mnt"};
}

void removeUnits(const UserUnits& units, const std::string& name) {
    for (const char* kind : {".path", ".service"})
        (void)units.remove(name + kind);
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
    const UserUnits units;
    const std::string name = launchctl::unitName(job->label);
    auto written = units.write(name + ".service", launchctl::serviceUnit(*job));
    if (written)
        written = units.write(name + ".path", launchctl::pathUnit(*job, mountFolders()));
    if (!written) {
        removeUnits(units, name);
        return complain(written.error().message());
    }
    const std::string waiting = unitThatWaits(*job, name);
    auto done = units.manager({"daemon-reload"});
    if (done && waiting.ends_with(".path"))
        done = units.manager({"enable", "--now", waiting});
    if (done && job->runsAtLoad)
        done = units.manager({"enable", "--now", name + ".service"});
    if (done)
        return 0;
    removeUnits(units, name);
    return complain(job->label + ": " + done.error().message());
}

int removeLabel(const std::string& label) {
    const UserUnits units;
    const std::string name = launchctl::unitName(label);
    if (!units.contents(name + ".service")) {
        complain("Error unloading: " + label);
        return 0; // as the Mac's own tool
    }
    const auto disabled = units.manager({"disable", "--now", name + ".path", name + ".service"});
    removeUnits(units, name);
    (void)units.manager({"daemon-reload"});
    return disabled ? 0 : complain(label + ": " + disabled.error().message());
}

int list(const std::vector<std::string>& labels) {
    const UserUnits units;
    if (!labels.empty())
        return units.manager({"is-active", "--quiet", launchctl::unitName(labels[0]) + ".path"}) ? 0 : 1;
    std::puts("PID\tStatus\tLabel");
    std::vector<std::string> found;
    for (const auto& unit : units.names()) {
        const auto label = unit.ends_with(".service") ? launchctl::labelOf(unit.substr(0, unit.rfind('.'))) : "";
        if (!label.empty())
            found.push_back(label);
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
