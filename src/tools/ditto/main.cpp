// ditto [-arch NAME]... SOURCE COPY
//
// Copies one file with its mode, owner, times and extended attributes; of an executable for several processors only the
// slices that are named. What it cannot do completely it does not do: there is a whole copy then, or none.
#include "formats/MachOReader.h"
#include "platform/UniqueFd.h"
#include "tools/Complaint.h"
#include "tools/ditto/Copy.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace sweeply;
using ditto::Failure;
using ditto::NewFile;

constexpr const char* kUsage = "usage: ditto [-arch NAME]... SOURCE COPY\n"
                               "Copies a file with its mode, owner, times and extended attributes. With -arch, of an\n"
                               "executable for several processors only those slices, byte for byte.\n";

/// Far more than there are processors.
constexpr std::uint64_t kLargestTable = std::uint64_t{1} << 20U;

struct Source {
    std::string path;
    UniqueFd fd;
    std::uint64_t size = 0;
};

Source openSource(const std::string& path) {
    Source source{path, UniqueFd(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK))};
    struct stat status {};
    if (!source.fd || ::fstat(source.fd.get(), &status) != 0)
        throw Failure::ofSystem(path);
    if (!S_ISREG(status.st_mode))
        throw Failure(path + ": not a regular file");
    source.size = static_cast<std::uint64_t>(status.st_size);
    return source;
}

std::string beginningOf(const Source& source, std::uint64_t size) {
    std::string bytes(static_cast<std::size_t>(std::min(size, source.size)), '\0');
    const ssize_t count = ::pread(source.fd.get(), bytes.data(), bytes.size(), 0);
    if (count != static_cast<ssize_t>(bytes.size()))
        throw Failure(source.path + ": could not be read");
    return bytes;
}

/// The slices of a fat file for the processors that are named, in their order; an error when it has none of them.
macho::FatFile keptSlices(const Source& source, std::uint64_t tableSize,
                          const std::vector<const macho::Architecture*>& wanted) {
    auto fat = macho::readFat(beginningOf(source, std::min(tableSize, kLargestTable)), source.size);
    if (!fat)
        throw Failure(source.path + ": truncated or malformed fat file (" + fat.error() + ")");
    std::erase_if(fat->slices, [&](const macho::FatArch& slice) {
        return std::ranges::find(wanted, macho::architectureOf(slice)) == wanted.end();
    });
    if (fat->slices.empty())
        throw Failure(source.path + ": holds code for none of these processors, and nothing would be left of it");
    return *std::move(fat);
}

void copySlices(const Source& source, const macho::FatFile& kept, const NewFile& copy) {
    if (kept.slices.size() == 1) {
        copy.copyFrom(source.fd.get(), kept.slices[0].offset, kept.slices[0].size, 0);
        return;
    }
    auto table = kept.slices;
    std::uint64_t end =
        macho::kFatHeaderSize + table.size() * std::uint64_t{kept.isWide ? macho::kFatArchSize64 : macho::kFatArchSize};
    for (auto& slice : table) {
        const std::uint64_t multiple = std::uint64_t{1} << slice.alignment;
        slice.offset = (end + multiple - 1) / multiple * multiple;
        end = slice.offset + slice.size;
    }
    copy.write(macho::fatHeader(table, kept.isWide), 0);
    for (std::size_t i = 0; i < table.size(); ++i)
        copy.copyFrom(source.fd.get(), kept.slices[i].offset, table[i].size, table[i].offset);
    if (::ftruncate(copy.fd(), static_cast<off_t>(end)) != 0) // a last slice may be empty
        throw Failure::ofSystem(copy.path());
}

void copyFile(const std::string& from, const std::string& to, const std::vector<const macho::Architecture*>& wanted) {
    const Source source = openSource(from);
    const auto tableSize = macho::fatTableSize(beginningOf(source, macho::kFatHeaderSize));
    if (wanted.empty() || !tableSize) {
        NewFile copy(to);
        copy.copyFrom(source.fd.get(), 0, source.size, 0);
        copy.takeAttributesFrom(source.fd.get());
        copy.keep();
        return;
    }
    const auto kept = keptSlices(source, *tableSize, wanted);
    NewFile copy(to);
    copySlices(source, kept, copy);
    copy.takeAttributesFrom(source.fd.get());
    copy.keep();
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    if (!arguments.empty() && (arguments[0] == "--help" || arguments[0] == "-h")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    try {
        std::vector<const macho::Architecture*> wanted;
        while (arguments.size() >= 2 && arguments[0] == "-arch") {
            wanted.push_back(macho::findArchitecture(arguments[1]));
            if (!wanted.back())
                throw Failure("unknown architecture " + arguments[1]);
            arguments.erase(arguments.begin(), arguments.begin() + 2);
        }
        if (arguments.size() != 2 || arguments[0].starts_with('-')) {
            std::fputs(kUsage, stderr);
            return 1;
        }
        copyFile(arguments[0], arguments[1], wanted);
        return 0;
    } catch (const std::exception& failure) {
        return printComplaint(std::string("ditto: ") + failure.what());
    }
}
