#include "formats/MachODescription.h"

#include <algorithm>
#include <array>

namespace sweeply::macho {

namespace {

struct TypeName {
    std::uint32_t cpuType;
    std::string_view name;
};
constexpr std::array kTypes{
    TypeName{kCpuPowerPC, "POWERPC"},
    TypeName{kCpuPowerPC64, "POWERPC64"},
    TypeName{kCpuI386, "I386"},
    TypeName{kCpuX86_64, "X86_64"},
    TypeName{kCpuArm, "ARM"},
    TypeName{6, "MC680x0"},
    TypeName{11, "HPPA"},
    TypeName{13, "MC88000"},
    TypeName{14, "SPARC"},
    TypeName{15, "I860"},
};

/// Those that are not called after the processor's own name.
struct SubtypeName {
    std::string_view architecture;
    std::string_view name;
};
constexpr std::array kSubtypes{
    SubtypeName{"ppc", "POWERPC_ALL"},       SubtypeName{"ppc64", "POWERPC_ALL"},
    SubtypeName{"ppc970-64", "POWERPC_970"}, SubtypeName{"i386", "I386_ALL"},
    SubtypeName{"x86_64", "X86_64_ALL"},     SubtypeName{"i486", "486"},
    SubtypeName{"i486SX", "486SX"},          SubtypeName{"pentium", "PENT"},
    SubtypeName{"pentpro", "PENTPRO"},       SubtypeName{"pentIIm3", "PENTII_M3"},
    SubtypeName{"pentIIm5", "PENTII_M5"},    SubtypeName{"arm", "ARM_ALL"},
    SubtypeName{"armv4t", "ARM_V4T"},        SubtypeName{"armv5", "ARM_V5TEJ"},
    SubtypeName{"armv6", "ARM_V6"},          SubtypeName{"armv7", "ARM_V7"},
    SubtypeName{"xscale", "ARM_XSCALE"},     SubtypeName{"m68k", "MC680x0_ALL"},
    SubtypeName{"m68040", "MC68040"},        SubtypeName{"m68030", "MC68030_ONLY"},
    SubtypeName{"hppa", "HPPA_ALL"},         SubtypeName{"hppa7100LC", "HPPA_7100LC"},
    SubtypeName{"m88k", "MC88000_ALL"},      SubtypeName{"sparc", "SPARC_ALL"},
    SubtypeName{"i860", "I860_ALL"},
};

std::string number(std::uint64_t value) { return std::to_string(value); }
std::string subtypeNumber(const FatArch& slice) { return number(slice.cpuSubtype & kCpuSubtypeMask); }

std::string nameOf(const FatArch& slice) {
    if (const auto* known = architectureOf(slice))
        return std::string(known->name);
    return "(cputype (" + number(slice.cpuType) + ") cpusubtype (" + subtypeNumber(slice) + "))";
}

std::string typeLine(const FatArch& slice) {
    const auto found = std::ranges::find(kTypes, slice.cpuType, &TypeName::cpuType);
    if (!architectureOf(slice) || found == kTypes.end())
        return "    cputype (" + number(slice.cpuType) + ")\n";
    return "    cputype CPU_TYPE_" + std::string(found->name) + "\n";
}

std::string subtypeLine(const FatArch& slice) {
    const auto* known = architectureOf(slice);
    if (!known)
        return "    cpusubtype cpusubtype (" + subtypeNumber(slice) + ")\n";
    const auto found = std::ranges::find(kSubtypes, known->name, &SubtypeName::architecture);
    // "ppc7400" is POWERPC_7400.
    const std::string name =
        found != kSubtypes.end() ? std::string(found->name) : "POWERPC_" + std::string(known->name.substr(3));
    return "    cpusubtype CPU_SUBTYPE_" + name + "\n";
}

} // namespace

std::string detailedInfo(std::string_view path, const FatFile& file) {
    std::string text = "Fat header in: " + std::string(path) + "\n";
    text += file.isWide ? "fat_magic 0xcafebabf\n" : "fat_magic 0xcafebabe\n";
    text += "nfat_arch " + number(file.slices.size()) + "\n";
    for (const auto& slice : file.slices) {
        text += "architecture " + nameOf(slice) + "\n" + typeLine(slice) + subtypeLine(slice);
        text += "    offset " + number(slice.offset) + "\n    size " + number(slice.size) + "\n";
        text += "    align 2^" + number(slice.alignment) + " (" + number(std::uint64_t{1} << slice.alignment) + ")\n";
    }
    return text;
}

std::string briefInfo(std::string_view path, const FatFile& file) {
    std::string text = "Architectures in the fat file: " + std::string(path) + " are: ";
    for (const auto& slice : file.slices)
        text += nameOf(slice) + " ";
    return text + "\n";
}

std::string briefInfo(std::string_view path, const FatArch& thin) {
    const auto* known = architectureOf(thin);
    const std::string name =
        known ? std::string(known->name) : "cputype " + number(thin.cpuType) + " cpusubtype " + subtypeNumber(thin);
    return "Non-fat file: " + std::string(path) + " is architecture: " + name + "\n";
}

} // namespace sweeply::macho
