// lsregister [-kill] [-r] [-domain local|system|user]... [--volume ROOT] [--home HOME]
//
// Builds the list of all applications of the Mac OS X system below ROOT anew, where our programs read it.
#include "formats/PropertyList.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"
#include "tools/Complaint.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace sweeply;

constexpr const char* kUsage =
    "usage: lsregister [-kill] [-r] [-domain local|system|user]... [--volume ROOT] [--home HOME]\n"
    "Builds the list of applications of the Mac OS X system below ROOT anew, in HOME, a path of it.\n";

int complain(const std::string& text) { return printComplaint("lsregister: " + text); }

std::vector<std::string> foldersOf(const std::string& domain, const std::string& home) {
    if (domain == "local")
        return {"/Applications"};
    if (domain == "system")
        return {"/System/Library/CoreServices"};
    if (domain == "user")
        return {joinedPath(home, "Applications")};
    return {};
}

} // namespace

int main(int argc, char** argv) {
    std::string volume = "/";
    const char* ownHome = std::getenv("HOME");
    std::string home = ownHome ? ownHome : "";
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const bool hasValue = i + 1 < argc;
        if (word == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (word == "--volume" && hasValue)
            volume = argv[++i];
        else if (word == "--home" && hasValue)
            home = argv[++i];
        else if (word == "-domain" && hasValue && !foldersOf(argv[i + 1], home).empty())
            folders.push_back(argv[++i]);
        else if (word != "-kill" && word != "-r") {
            std::fputs(kUsage, stderr);
            return 1;
        }
    }
    const auto files = FileManager::open(volume);
    if (!files)
        return complain(files.error().message());
    if (!home.starts_with('/'))
        return complain("no home folder; name one with --home");
    std::vector<std::string> applications;
    for (const auto& domain : folders) {
        for (const auto& folder : foldersOf(domain, home)) {
            auto walk = (*files)->enumeratorAtPath(folder);
            while (const auto entry = walk.next()) {
                if (entry->type != FileType::Directory || pathExtension(entry->path) != "app")
                    continue;
                walk.skipDescendants();
                applications.push_back(joinedPath(folder, entry->path));
            }
        }
    }
    const std::string list = joinedPath(home, "Library/Application Support/Sweeply/RegisteredApplications.plist");
    const auto written = (*files)->createDirectoryAtPath(pathWithoutLastComponent(list)).and_then([&] {
        return (*files)->writeAtomically(list, plist::writeBinary(plist::arrayOf(applications)));
    });
    return written ? 0 : complain(written.error().message());
}
