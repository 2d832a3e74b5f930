#include "tools/launchctl/Units.h"

#include "formats/UnitFile.h"

#include <algorithm>
#include <charconv>

namespace launchctl {

namespace {

using sweeply::unitArgument;
using sweeply::unitText;
using sweeply::plist::Value;
using Flaw = tl::unexpected<std::string>;

constexpr std::string_view kPrefix = "launchd-";
constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._";
constexpr std::string_view kDigits = "0123456789abcdef";
/// Escaped, it has to fit into a file name.
constexpr std::size_t kLongestLabel = 60;

bool isTrue(const Value& configuration, const char* key) {
    const auto* value = configuration.find(key);
    return value && value->asBool().value_or(false);
}

} // namespace

tl::expected<Job, std::string> jobIn(const Value& configuration) {
    Job job;
    const auto* label = configuration.findString("Label");
    if (!label || label->empty() || label->size() > kLongestLabel)
        return Flaw("missing the Label key");
    job.label = *label;
    if (const auto* arguments = configuration.find("ProgramArguments"))
        job.arguments = sweeply::plist::textsOf(*arguments);
    if (const auto* program = configuration.findString("Program")) {
        if (job.arguments.empty())
            job.arguments.push_back(*program);
        else
            job.arguments[0] = *program;
    }
    if (job.arguments.empty() || !job.arguments[0].starts_with('/'))
        return Flaw("neither Program nor ProgramArguments name a program by its whole path");
    if (const auto* paths = configuration.find("WatchPaths"))
        job.watchedPaths = sweeply::plist::textsOf(*paths);
    job.startsOnMount = isTrue(configuration, "StartOnMount");
    job.runsAtLoad = isTrue(configuration, "RunAtLoad");
    for (const auto* texts : {&job.arguments, &job.watchedPaths}) {
        if (!std::ranges::all_of(*texts, sweeply::fitsInUnitFile))
            return Flaw("a name with control characters, or none in UTF-8");
    }
    if (!sweeply::fitsInUnitFile(job.label))
        return Flaw("a label with control characters, or none in UTF-8");
    return job;
}

std::string unitName(const std::string& label) {
    std::string name(kPrefix);
    for (const char c : label) {
        if (kPlain.find(c) != std::string_view::npos) {
            name += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        name += {'-', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return name;
}

std::string labelOf(const std::string& unitName) {
    if (!unitName.starts_with(kPrefix))
        return {};
    std::string label;
    for (std::size_t at = kPrefix.size(); at < unitName.size(); ++at) {
        unsigned byte = 0;
        const char* digits = unitName.data() + at + 1;
        if (unitName[at] == '-' && at + 2 < unitName.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            label += static_cast<char>(byte);
            at += 2;
        } else {
            label += unitName[at];
        }
    }
    return label;
}

std::string serviceUnit(const Job& job) {
    // The manager refuses programs with some characters in their names, but hands any of them on as an argument.
    std::string command = "/bin/sh -c " + unitArgument("exec \"$0\" \"$@\"");
    for (const auto& argument : job.arguments)
        command += " " + unitArgument(argument);
    return "[Unit]\nDescription=" + unitText(job.label) + "\n\n[Service]\nType=oneshot\nExecStart=" + command + "\n" +
           (job.runsAtLoad ? "\n[Install]\nWantedBy=default.target\n" : "");
}

std::string pathUnit(const Job& job, const std::vector<std::string>& mountFolders) {
    std::string unit = "[Unit]\nDescription=" + unitText(job.label) + "\n\n[Path]\n";
    for (const auto& path : job.watchedPaths)
        unit += "PathModified=" + unitText(path) + "\n";
    if (job.startsOnMount) {
        for (const auto& folder : mountFolders)
            unit += "PathModified=" + unitText(folder) + "\n";
    }
    return unit + "\n[Install]\nWantedBy=paths.target\n";
}

} // namespace launchctl
