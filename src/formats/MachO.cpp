#include "formats/MachO.h"

#include "formats/ByteWriter.h"

#include <algorithm>
#include <array>
#include <vector>

namespace sweeply::macho {

namespace {

using namespace std::string_view_literals;

constexpr std::array kArchitectures{
    Architecture{"ppc", kCpuPowerPC, 0},
    Architecture{"ppc601", kCpuPowerPC, 1},
    Architecture{"ppc603", kCpuPowerPC, 3},
    Architecture{"ppc603e", kCpuPowerPC, 4},
    Architecture{"ppc603ev", kCpuPowerPC, 5},
    Architecture{"ppc604", kCpuPowerPC, 6},
    Architecture{"ppc604e", kCpuPowerPC, 7},
    Architecture{"ppc750", kCpuPowerPC, 9},
    Architecture{"ppc7400", kCpuPowerPC, 10},
    Architecture{"ppc7450", kCpuPowerPC, 11},
    Architecture{"ppc970", kCpuPowerPC, 100},
    Architecture{"ppc64", kCpuPowerPC64, 0},
    Architecture{"ppc970-64", kCpuPowerPC64, 100},
    Architecture{"i386", kCpuI386, 3},
    Architecture{"i486", kCpuI386, 4},
    Architecture{"i486SX", kCpuI386, 132},
    Architecture{"pentium", kCpuI386, 5},
    Architecture{"pentpro", kCpuI386, 22},
    Architecture{"pentIIm3", kCpuI386, 54},
    Architecture{"pentIIm5", kCpuI386, 86},
    Architecture{"x86_64", kCpuX86_64, 3},
    Architecture{"arm", kCpuArm, 0},
    Architecture{"armv4t", kCpuArm, 5},
    Architecture{"armv6", kCpuArm, 6},
    Architecture{"armv5", kCpuArm, 7},
    Architecture{"xscale", kCpuArm, 8},
    Architecture{"armv7", kCpuArm, 9},
    Architecture{"m68k", 6, 1},
    Architecture{"m68040", 6, 2},
    Architecture{"m68030", 6, 3},
    Architecture{"hppa", 11, 0},
    Architecture{"hppa7100LC", 11, 1},
    Architecture{"m88k", 13, 0},
    Architecture{"sparc", 14, 0},
    Architecture{"i860", 15, 0},
};

constexpr std::uint32_t kExecutableFile = 2;
constexpr std::uint32_t kNoUndefinedSymbols = 1;
constexpr std::uint32_t kLoadSegment = 0x1;
constexpr std::uint32_t kLoadThread = 0x5;
constexpr std::uint32_t kLoadSegment64 = 0x19;
constexpr std::uint32_t kCodeSectionFlags = 0x80000400; // instructions, and nothing but
constexpr std::uint32_t kReadable = 1;
constexpr std::uint32_t kExecutable = 4;
constexpr std::uint32_t kPageSize = 1U << kPageAlignment;

/// What a thin executable needs to know about its processor: the registers that it starts with, and code for exit(0).
struct Machine {
    std::uint32_t cpuType;
    std::uint32_t threadFlavor;
    std::uint32_t threadWords;    // the register set's size in 32-bit words; 0 for no register set
    std::uint32_t programCounter; // its place among them, in bytes
    std::string_view exitCode;
};

// ppc64 goes without: present-day tools do not know its register set and call a file that has one malformed.
constexpr std::array kMachines{
    Machine{kCpuPowerPC, 1, 40, 0, "\x38\x00\x00\x01\x38\x60\x00\x00\x44\x00\x00\x02"sv},
    Machine{kCpuPowerPC64, 0, 0, 0, "\x38\x00\x00\x01\x38\x60\x00\x00\x44\x00\x00\x02"sv},
    Machine{kCpuI386, 1, 16, 40, "\x31\xc0\x50\x50\x40\xcd\x80"sv},
    Machine{kCpuX86_64, 4, 42, 128, "\x31\xff\xb8\x01\x00\x00\x02\x0f\x05"sv},
};

constexpr std::uint32_t roundUp(std::uint32_t value, std::uint32_t multiple) {
    return (value + multiple - 1) / multiple * multiple;
}

/// Addresses and sizes are as wide as the processor's pointers.
class ThinWriter final {
  public:
    explicit ThinWriter(const Architecture& architecture)
        : m_bytes(architecture.byteOrder()), m_is64Bit(architecture.is64Bit()) {}

    void word(std::uint64_t value) {
        if (m_is64Bit)
            m_bytes.u64(value);
        else
            m_bytes.u32(static_cast<std::uint32_t>(value));
    }

    void segment(std::string_view name, std::uint64_t address, std::uint64_t memorySize, std::uint64_t fileSize,
                 std::uint64_t fileOffset, std::uint32_t protection, std::uint32_t sections) {
        m_bytes.u32(m_is64Bit ? kLoadSegment64 : kLoadSegment);
        m_bytes.u32(segmentSize() + sections * sectionSize());
        m_bytes.fixedText(name, 16);
        word(address);
        word(memorySize);
        word(fileOffset);
        word(fileSize);
        m_bytes.u32(protection);
        m_bytes.u32(protection);
        m_bytes.u32(sections);
        m_bytes.u32(0);
    }

    void codeSection(std::uint64_t address, std::uint64_t size, std::uint32_t fileOffset) {
        m_bytes.fixedText("__text", 16);
        m_bytes.fixedText("__TEXT", 16);
        word(address);
        word(size);
        m_bytes.u32(fileOffset);
        m_bytes.u32(4); // aligned to 2^4
        m_bytes.u32(0); // no relocations
        m_bytes.u32(0);
        m_bytes.u32(kCodeSectionFlags);
        m_bytes.u32(0);
        word(0); // two reserved words, three when they are 64-bit
    }

    void thread(const Machine& machine, std::uint64_t entry) {
        m_bytes.u32(kLoadThread);
        m_bytes.u32(threadSize(machine));
        m_bytes.u32(machine.threadFlavor);
        m_bytes.u32(machine.threadWords);
        const std::size_t registers = m_bytes.size();
        m_bytes.padTo(registers + machine.programCounter);
        word(entry);
        m_bytes.padTo(registers + 4 * std::size_t{machine.threadWords});
    }

    [[nodiscard]] std::uint32_t headerSize() const { return m_is64Bit ? 32 : 28; }
    [[nodiscard]] std::uint32_t segmentSize() const { return m_is64Bit ? 72 : 56; }
    [[nodiscard]] std::uint32_t sectionSize() const { return m_is64Bit ? 80 : 68; }
    [[nodiscard]] static std::uint32_t threadSize(const Machine& machine) {
        return machine.threadWords == 0 ? 0 : 16 + 4 * machine.threadWords;
    }
    [[nodiscard]] ByteWriter& bytes() { return m_bytes; }

  private:
    ByteWriter m_bytes;
    bool m_is64Bit;
};

std::uint32_t subtypeInFile(const Architecture& architecture) {
    return architecture.cpuSubtype | (architecture.is64Bit() ? kCpuSubtypeLib64 : 0);
}

} // namespace

std::span<const Architecture> architectures() { return kArchitectures; }

const Architecture* findArchitecture(std::string_view name) {
    if (name == "i586" || name == "i686")
        name = name == "i586" ? "pentium" : "pentpro";
    const auto* found = std::ranges::find(kArchitectures, name, &Architecture::name);
    return found == kArchitectures.end() ? nullptr : found;
}

std::string fatHeader(std::span<const FatArch> table, bool isWide) {
    ByteWriter out(std::endian::big);
    out.u32(isWide ? kFatMagic64 : kFatMagic);
    out.u32(static_cast<std::uint32_t>(table.size()));
    for (const FatArch& arch : table) {
        out.u32(arch.cpuType);
        out.u32(arch.cpuSubtype);
        for (const std::uint64_t field : {arch.offset, arch.size}) {
            if (isWide)
                out.u64(field);
            else
                out.u32(static_cast<std::uint32_t>(field));
        }
        out.u32(arch.alignment);
        if (isWide)
            out.u32(0); // reserved
    }
    return out.take();
}

std::string executable(const Architecture& architecture, std::uint32_t codeSize) {
    const Machine& machine = *std::ranges::find(kMachines, architecture.cpuType, &Machine::cpuType);
    ThinWriter out(architecture);
    const bool is64Bit = architecture.is64Bit();

    codeSize = std::max(codeSize, static_cast<std::uint32_t>(machine.exitCode.size()));
    const std::uint32_t commandsSize = 3 * out.segmentSize() + out.sectionSize() + ThinWriter::threadSize(machine);
    const std::uint32_t codeOffset = roundUp(out.headerSize() + commandsSize, 16);
    const std::uint32_t textSize = roundUp(codeOffset + codeSize, kPageSize);
    // The first page, or the first 4 GiB, stays unmapped so that null pointers trap.
    const std::uint64_t textAddress = is64Bit ? 0x100000000 : kPageSize;

    out.bytes().u32(is64Bit ? kMagic64 : kMagic32);
    out.bytes().u32(architecture.cpuType);
    out.bytes().u32(subtypeInFile(architecture));
    out.bytes().u32(kExecutableFile);
    out.bytes().u32(machine.threadWords == 0 ? 3 : 4); // commands
    out.bytes().u32(commandsSize);
    out.bytes().u32(kNoUndefinedSymbols);
    if (is64Bit)
        out.bytes().u32(0);
    out.segment("__PAGEZERO", 0, textAddress, 0, 0, 0, 0);
    out.segment("__TEXT", textAddress, textSize, textSize, 0, kReadable | kExecutable, 1);
    out.codeSection(textAddress + codeOffset, codeSize, codeOffset);
    out.segment("__LINKEDIT", textAddress + textSize, kPageSize, 0, textSize, kReadable, 0);
    if (machine.threadWords != 0)
        out.thread(machine, textAddress + codeOffset);
    out.bytes().padTo(codeOffset);
    out.bytes().bytes(machine.exitCode);
    out.bytes().padTo(textSize);
    return out.bytes().take();
}

std::string universalExecutable(std::span<const Architecture* const> list, std::uint32_t codeSize) {
    std::vector<FatArch> table;
    std::vector<std::string> images;
    auto end = kFatHeaderSize + kFatArchSize * static_cast<std::uint32_t>(list.size());
    for (const Architecture* architecture : list) {
        images.push_back(executable(*architecture, codeSize));
        const auto size = static_cast<std::uint32_t>(images.back().size());
        const std::uint32_t offset = roundUp(end, kPageSize);
        table.push_back({architecture->cpuType, subtypeInFile(*architecture), offset, size, kPageAlignment});
        end = offset + size;
    }
    std::string file = fatHeader(table);
    for (std::size_t i = 0; i < images.size(); ++i) {
        file.resize(static_cast<std::size_t>(table[i].offset), '\0');
        file += images[i];
    }
    return file;
}

} // namespace sweeply::macho
