#include "formats/FlatPackage.h"
#include "formats/KeyedArchive.h"
#include "formats/PackageInfo.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

/// The formats of installer packages: the first byte says which.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace sweeply;
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    if (bytes[0] == 'k') {
        const auto archive = KeyedArchive::parse(text);
        for (const auto* element : archive ? archive->elements(archive->valueForKey(archive->root(), "pkgs"))
                                           : std::vector<const plist::Value*>())
            (void)(element && archive->member(*element, "name"));
    } else if (bytes[0] == 'x') {
        const int file = ::memfd_create("package", 0);
        if (file < 0 || ::write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            std::abort();
        ::lseek(file, 0, SEEK_SET);
        const FlatPackageLimits limits{100, 1U << 20U, 2U << 20U};
        std::size_t total = 0;
        (void)readFlatPackage(
            file, [](std::string_view) { return true; },
            [&](std::string_view, const std::string& member) { total += member.size(); }, limits);
        if (total > limits.totalSize)
            std::abort();
        ::close(file);
    } else {
        (void)parsePackageInfo(text);
    }
    return 0;
}
