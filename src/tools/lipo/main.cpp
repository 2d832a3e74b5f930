// lipo -detailed_info FILE... | -info FILE...
//
// Tells which processors a Mac's executable is for, in the words of the Mac's own tool.
#include "formats/MachODescription.h"
#include "platform/UniqueFd.h"
#include "tools/Complaint.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace sweeply;

/// Far more than there are processors.
constexpr std::uint64_t kLargestTable = std::uint64_t{1} << 20U;

constexpr const char* kUsage = "usage: lipo -detailed_info FILE...\n"
                               "       lipo -info FILE...\n"
                               "Tells which processors each executable is for: for fat files the place, size and\n"
                               "alignment of every slice, or with -info just their names.\n";

int complain(const std::string& text) { return printComplaint("lipo: " + text); }

/// The first `size` bytes, or all there are.
std::string beginningOf(int fd, std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t length = 0;
    while (length < size) {
        const ssize_t count = ::pread(fd, bytes.data() + length, size - length, static_cast<off_t>(length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

int describe(const std::string& path, bool inDetail) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0)
        return complain("can't open input file: " + path + " (" + std::strerror(errno) + ")");
    constexpr std::size_t kHead = 64;
    const std::string head = beginningOf(file.get(), kHead);
    std::string text;
    if (const auto tableSize = macho::fatTableSize(head)) {
        const auto size = static_cast<std::uint64_t>(status.st_size);
        const auto fat = macho::readFat(
            beginningOf(file.get(), static_cast<std::size_t>(std::min(*tableSize, kLargestTable))), size);
        if (!fat)
            return complain("truncated or malformed fat file (" + fat.error() + ") " + path);
        text = inDetail ? macho::detailedInfo(path, *fat) : macho::briefInfo(path, *fat);
    } else if (const auto thin = macho::readThin(head)) {
        if (inDetail)
            text = "input file " + path + " is not a fat file\n";
        text += macho::briefInfo(path, *thin);
    } else {
        return complain("can't figure out the architecture type of: " + path);
    }
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        return complain("standard output: could not be written");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string operation = arguments.empty() ? std::string() : arguments.front();
    if (operation == "--help" || operation == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if ((operation != "-detailed_info" && operation != "-info") || arguments.size() < 2) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (const int status = describe(arguments[i], operation == "-detailed_info"); status != 0)
            return status;
    }
    return std::fflush(stdout) == 0 ? 0 : complain("standard output: could not be written");
}
