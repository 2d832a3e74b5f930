#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Mach-O files, the Mac's executables: "thin" ones for one processor, and "fat" ones that hold a thin file per
/// processor behind a table. Pure functions over bytes, safe from any thread.
namespace sweeply::macho {

inline constexpr std::uint32_t kFatMagic = 0xcafebabe;   ///< always big-endian
inline constexpr std::uint32_t kFatMagic64 = 0xcafebabf; ///< with offsets and sizes of 64 bits
inline constexpr std::uint32_t kMagic32 = 0xfeedface;    ///< in the processor's own byte order, like all of a thin file
inline constexpr std::uint32_t kMagic64 = 0xfeedfacf;

inline constexpr std::uint32_t kFatHeaderSize = 8; ///< magic and number of slices
inline constexpr std::uint32_t kFatArchSize = 20;  ///< one slice in the table
inline constexpr std::uint32_t kFatArchSize64 = 32;
/// Slices for these processors start at multiples of 2^12, the size of their pages.
inline constexpr std::uint32_t kPageAlignment = 12;

inline constexpr std::uint32_t kCpu64Bit = 0x01000000;
inline constexpr std::uint32_t kCpuI386 = 7;
inline constexpr std::uint32_t kCpuX86_64 = kCpuI386 | kCpu64Bit;
inline constexpr std::uint32_t kCpuArm = 12;
inline constexpr std::uint32_t kCpuPowerPC = 18;
inline constexpr std::uint32_t kCpuPowerPC64 = kCpuPowerPC | kCpu64Bit;

/// The part of a subtype that tells processors apart; the rest are flags.
inline constexpr std::uint32_t kCpuSubtypeMask = 0x00ffffff;
/// The flag that 64-bit executables carry in their subtype.
inline constexpr std::uint32_t kCpuSubtypeLib64 = 0x80000000;

/// A processor as the Mac's tools name it on their command lines.
struct Architecture {
    std::string_view name;
    std::uint32_t cpuType = 0;
    std::uint32_t cpuSubtype = 0; ///< without flags

    [[nodiscard]] bool is64Bit() const { return (cpuType & kCpu64Bit) != 0; }
    [[nodiscard]] std::endian byteOrder() const {
        return (cpuType & ~kCpu64Bit) == kCpuPowerPC ? std::endian::big : std::endian::little;
    }
};

/// Every processor with a name.
[[nodiscard]] std::span<const Architecture> architectures();
/// The one called `name`, also by another of its names ("i586"), or nullptr.
[[nodiscard]] const Architecture* findArchitecture(std::string_view name);

/// One row of a fat file's table.
struct FatArch {
    std::uint32_t cpuType = 0;
    std::uint32_t cpuSubtype = 0;
    std::uint64_t offset = 0; ///< of the slice in the file
    std::uint64_t size = 0;
    std::uint32_t alignment = 0; ///< as a power of two
};

/// The head of a fat file: magic, count and table, without padding. A wide one has room for 64 bits; in another one
/// nothing may lie beyond 4 GiB.
[[nodiscard]] std::string fatHeader(std::span<const FatArch> table, bool isWide = false);

/// A thin executable that ends at once with status 0, its code filled with zeros up to `codeSize` bytes (less than the
/// code itself needs is taken as just that). `architecture` must be one of ppc, ppc64, i386 and x86_64, of any subtype.
[[nodiscard]] std::string executable(const Architecture& architecture, std::uint32_t codeSize);

/// A fat file of one such executable for each of `list`, in that order. Less than 4 GiB together.
[[nodiscard]] std::string universalExecutable(std::span<const Architecture* const> list, std::uint32_t codeSize);

} // namespace sweeply::macho
