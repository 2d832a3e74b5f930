// lsbom [-sfdlbcm] BOM...
//
// Lists what a bill of materials says was installed, as the Mac's own tool does.
#include "formats/BomReader.h"
#include "tools/Complaint.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace sweeply;

constexpr const char* kUsage = "usage: lsbom [-s] [-fdlbc] [-m] BOM...\n"
                               "  -s           only paths\n"
                               "  -f -d -l     only files, folders, links; together: all of these\n"
                               "  -b -c        only block devices, character devices\n"
                               "  -m           with the times of files\n";

struct Options {
    bool onlyPaths = false;
    bool withTimes = false;
    std::string kinds; ///< of "fdlbc"; empty for all
};

bool complain(const std::string& text) {
    printComplaint("lsbom: " + text);
    return false;
}

char kindOf(const bom::Entry& entry) {
    constexpr unsigned kTypeBits = 0170000;
    constexpr unsigned kBlockDevice = 0060000;
    switch (entry.type) {
    case bom::EntryType::Directory:
        return 'd';
    case bom::EntryType::SymbolicLink:
        return 'l';
    case bom::EntryType::Device:
        return (entry.mode & kTypeBits) == kBlockDevice ? 'b' : 'c';
    case bom::EntryType::File:
        break;
    }
    return 'f';
}

void print(const bom::Entry& entry, const Options& options) {
    const char kind = kindOf(entry);
    if (!options.kinds.empty() && options.kinds.find(kind) == std::string::npos)
        return;
    std::string line = entry.path == "." ? "." : "./" + entry.path;
    if (!options.onlyPaths) {
        char text[160];
        std::snprintf(text, sizeof text, "\t%o\t%u/%u", static_cast<unsigned>(entry.mode), entry.owner, entry.group);
        line += text;
        if (kind == 'b' || kind == 'c')
            line += "\t" + std::to_string(entry.device);
        if (kind == 'f' || kind == 'l')
            line += "\t" + std::to_string(entry.size) + "\t" + std::to_string(entry.checksum);
        if (kind == 'l')
            line += "\t" + entry.linkTarget;
        const std::time_t time = entry.modified;
        std::tm parts{};
        if (options.withTimes && kind == 'f' && ::gmtime_r(&time, &parts) &&
            std::strftime(text, sizeof text, "\t%a %b %e %H:%M:%S %Y", &parts) > 0)
            line += text;
    }
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
}

bool list(const std::string& path, const Options& options) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    if (!file || !(bytes << file.rdbuf()))
        return complain(path + ": " + std::strerror(errno));
    const auto listed = bom::read(bytes.str(), [&](const bom::Entry& entry) { print(entry, options); });
    if (listed && listed->count == 0)
        return true;
    return complain(path + ": " + (listed ? bom::describe(*listed) : listed.error()));
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    std::vector<std::string> paths;
    for (const std::string& argument : std::vector<std::string>(argv + 1, argv + argc)) {
        if (argument == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (argument.size() < 2 || argument[0] != '-') {
            paths.push_back(argument);
            continue;
        }
        for (const char letter : argument.substr(1)) {
            if (letter == 's')
                options.onlyPaths = true;
            else if (letter == 'm')
                options.withTimes = true;
            else if (std::strchr("fdlbc", letter))
                options.kinds += letter;
            else
                return complain(std::string("unknown option -") + letter) ? 0 : 1;
        }
    }
    if (paths.empty()) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    bool isComplete = true;
    for (const auto& path : paths)
        isComplete = list(path, options) && isComplete;
    return std::fflush(stdout) == 0 && isComplete ? 0 : 1;
}
