#include "appcore/ProcessorFamily.h"

#include "formats/MachOReader.h"
#include "platform/FileManager.h"
#include "platform/SystemVersion.h"

#include <sys/utsname.h>
#include <unistd.h>

namespace sweeply {

namespace {

constexpr const char* kIntel = "intel";
constexpr const char* kPowerPC = "ppc";
constexpr const char* kUnknown = "unknown";

/// A kernel for several processors is on the disk of either kind of machine.
std::string familyOfKernel(const FileManager& files) {
    constexpr std::size_t kHead = 64;
    const auto head = files.beginningOfFileAtPath("/mach_kernel", kHead);
    const auto thin = head ? macho::readThin(*head) : std::nullopt;
    if (!thin)
        return kUnknown;
    switch (thin->cpuType) {
    case macho::kCpuI386:
    case macho::kCpuX86_64:
        return kIntel;
    case macho::kCpuPowerPC:
    case macho::kCpuPowerPC64:
        return kPowerPC;
    default:
        return kUnknown;
    }
}

} // namespace

std::string processorFamilyOfMachine(std::string_view machine) {
    const auto names = [&](std::string_view part) { return machine.find(part) != std::string_view::npos; };
    if (names("i386") || names("x86_64"))
        return kIntel;
    return names("ppc") || names("Power Macintosh") ? kPowerPC : kUnknown;
}

std::string processorFamily(const FileManager& files, const SystemVersion& version) {
    if (files.isHostRoot()) {
        utsname names{};
        return ::uname(&names) == 0 ? processorFamilyOfMachine(names.machine) : kUnknown;
    }
    return version.isSnowLeopardOrBetter() ? kIntel : familyOfKernel(files);
}

} // namespace sweeply
