// The file-system core alone, one operation a run, for bench/compare.
//   treeBench make DIR FOLDERS FILES [BYTES]   FOLDERS folders of FILES files each in a new folder; 1 is a flat one
//   treeBench size DIR
//   treeBench remove PARENT NAME
#include "appcore/sizes/DiskSizes.h"
#include "platform/FileManager.h"
#include "platform/TreeRemover.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace sweeply;

int make(const std::string& directory, int folders, int files, std::size_t bytes) {
    const std::string contents(bytes, 'x');
    for (int i = 0; i < folders; ++i) {
        const std::string folder = folders == 1 ? directory : directory + "/folder" + std::to_string(i);
        std::filesystem::create_directories(folder);
        for (int j = 0; j < files; ++j)
            std::ofstream(folder + "/file" + std::to_string(j), std::ios::binary) << contents;
    }
    return 0;
}

int size(const std::string& directory) {
    const auto files = FileManager::open("/");
    const auto version = SystemVersion::fromProductVersion("10.5.8");
    if (!files || !version)
        return 1;
    std::printf("%llu\n", static_cast<unsigned long long>(DiskSizes(**files, *version).folderSizeAtPath(directory)));
    return 0;
}

int remove(const std::string& parent, const std::string& name) {
    const UniqueFd fd(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto removed = removeTree(fd.get(), name);
    if (!removed)
        std::fprintf(stderr, "%s\n", removed.error().message().c_str());
    return removed ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() >= 4 && arguments[0] == "make")
        return make(arguments[1], std::stoi(arguments[2]), std::stoi(arguments[3]),
                    arguments.size() > 4 ? std::stoul(arguments[4]) : 100);
    if (arguments.size() == 2 && arguments[0] == "size")
        return size(arguments[1]);
    if (arguments.size() == 3 && arguments[0] == "remove")
        return remove(arguments[1], arguments[2]);
    std::fputs("usage: treeBench make DIR FOLDERS FILES [BYTES] | size DIR | remove PARENT NAME\n", stderr);
    return 2;
}
