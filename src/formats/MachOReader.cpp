#include "formats/MachOReader.h"

#include "formats/ByteReader.h"

#include <algorithm>

namespace sweeply::macho {

namespace {

using Flaw = tl::unexpected<std::string>;

constexpr std::uint32_t kMaximalAlignment = 15;
/// Java's classes carry their version where a fat file has its count, and no class was ever older than 45.
constexpr std::uint32_t kFewerThanJava = 43;

std::optional<FatArch> sliceAt(const ByteReader& in, std::uint64_t at, bool isWide) {
    const auto type = in.u32(at);
    const auto subtype = in.u32(at + 4);
    const auto alignment = in.u32(at + (isWide ? 24 : 16));
    const auto field = [&](std::uint64_t number) -> std::optional<std::uint64_t> {
        if (isWide)
            return in.u64(at + 8 + 8 * number);
        return in.u32(at + 8 + 4 * number);
    };
    const auto offset = field(0);
    const auto size = field(1);
    if (!type || !subtype || !offset || !size || !alignment)
        return std::nullopt;
    return FatArch{*type, *subtype, *offset, *size, *alignment};
}

std::string placeOf(const FatArch& slice) {
    return "cputype (" + std::to_string(slice.cpuType) + ") cpusubtype (" +
           std::to_string(slice.cpuSubtype & kCpuSubtypeMask) + ")";
}

/// What is wrong with one slice by itself; empty when nothing is.
std::string flawOf(const FatArch& slice, std::uint64_t tableSize, std::uint64_t fileSize) {
    if (slice.offset > fileSize || slice.size > fileSize - slice.offset)
        return "offset plus size of " + placeOf(slice) + " extends past the end of the file";
    if (slice.alignment > kMaximalAlignment)
        return "align (2^" + std::to_string(slice.alignment) + ") too large of " + placeOf(slice);
    if (slice.offset % (std::uint64_t{1} << slice.alignment) != 0)
        return "offset " + std::to_string(slice.offset) + " of " + placeOf(slice) + " not aligned on its alignment";
    if (slice.offset < tableSize)
        return placeOf(slice) + " overlaps the table";
    return {};
}

/// What is wrong with the slices together.
std::string flawOf(std::vector<FatArch> slices) {
    const auto processor = [](const FatArch& slice) {
        return std::pair(slice.cpuType, slice.cpuSubtype & kCpuSubtypeMask);
    };
    std::ranges::sort(slices, {}, processor);
    if (const auto twin = std::ranges::adjacent_find(slices, {}, processor); twin != slices.end())
        return "contains two of the same architecture " + placeOf(*twin);
    std::ranges::sort(slices, {}, &FatArch::offset);
    const auto overlap = std::ranges::adjacent_find(
        slices, [](const FatArch& one, const FatArch& next) { return one.offset + one.size > next.offset; });
    return overlap == slices.end() ? std::string() : placeOf(*overlap) + " overlaps another one";
}

} // namespace

bool mayBeFat(std::string_view head) {
    const auto count = ByteReader(head, std::endian::big).u32(4);
    return fatTableSize(head) && *count > 0 && *count < kFewerThanJava;
}

std::optional<std::uint64_t> fatTableSize(std::string_view head) {
    const ByteReader in(head, std::endian::big);
    const auto magic = in.u32(0);
    const auto count = in.u32(4);
    if (!magic || !count || (*magic != kFatMagic && *magic != kFatMagic64))
        return std::nullopt;
    return kFatHeaderSize + std::uint64_t{*count} * (*magic == kFatMagic64 ? kFatArchSize64 : kFatArchSize);
}

tl::expected<FatFile, std::string> readFat(std::string_view head, std::uint64_t fileSize) {
    const auto tableSize = fatTableSize(head);
    if (!tableSize)
        return Flaw("no fat file");
    if (*tableSize > fileSize || *tableSize > head.size())
        return Flaw("fat_arch structs would extend past the end of the file");
    const ByteReader in(head, std::endian::big);
    FatFile file;
    file.isWide = *in.u32(0) == kFatMagic64;
    const std::uint64_t step = file.isWide ? kFatArchSize64 : kFatArchSize;
    for (std::uint64_t at = kFatHeaderSize; at < *tableSize; at += step) {
        const auto slice = sliceAt(in, at, file.isWide);
        if (!slice)
            return Flaw("fat_arch structs would extend past the end of the file");
        if (auto flaw = flawOf(*slice, *tableSize, fileSize); !flaw.empty())
            return Flaw(std::move(flaw));
        file.slices.push_back(*slice);
    }
    if (file.slices.empty())
        return Flaw("contains zero architecture specific files");
    if (auto flaw = flawOf(file.slices); !flaw.empty())
        return Flaw(std::move(flaw));
    return file;
}

std::optional<FatArch> readThin(std::string_view head) {
    for (const auto order : {std::endian::little, std::endian::big}) {
        const ByteReader in(head, order);
        const auto magic = in.u32(0);
        const auto type = in.u32(4);
        const auto subtype = in.u32(8);
        if (magic && type && subtype && (*magic == kMagic32 || *magic == kMagic64))
            return FatArch{*type, *subtype};
    }
    return std::nullopt;
}

const Architecture* architectureOf(const FatArch& slice) {
    const auto found = std::ranges::find_if(architectures(), [&](const Architecture& known) {
        return known.cpuType == slice.cpuType && known.cpuSubtype == (slice.cpuSubtype & kCpuSubtypeMask);
    });
    return found == architectures().end() ? nullptr : &*found;
}

} // namespace sweeply::macho
