#include "formats/MachO.h"

#include "formats/BigEndian.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace sweeply::macho {

namespace {

struct Thin {
    const char* name;
    const char* head; // magic, processor type and subtype as they lie in the file
    unsigned width;   // of an address
};

const std::vector<Thin> kThin{
    {"ppc", "feedface0000001200000000", 4},    {"ppc7400", "feedface000000120000000a", 4},
    {"ppc64", "feedfacf0100001280000000", 8},  {"i386", "cefaedfe0700000003000000", 4},
    {"x86_64", "cffaedfe0700000103000080", 8},
};

std::string hex(std::string_view bytes) {
    std::string text;
    for (char c : bytes) {
        for (int shift : {4, 0})
            text += "0123456789abcdef"[(static_cast<std::uint8_t>(c) >> shift) & 15];
    }
    return text;
}

/// An integer of a thin file, in the order that its magic shows.
std::uint64_t number(std::string_view file, std::size_t at, unsigned width) {
    if (test::bigEndian(file, 0, 2) == 0xfeed)
        return test::bigEndian(file, at, width);
    std::string reversed(file.substr(at, width));
    std::ranges::reverse(reversed);
    return test::bigEndian(reversed, 0, width);
}

} // namespace

TEST(MachO, ThinExecutableBeginsLikeOneOfItsProcessor) {
    for (const Thin& thin : kThin)
        EXPECT_EQ(hex(executable(*findArchitecture(thin.name), 100).substr(0, 12)), thin.head) << thin.name;
}

TEST(MachO, LoadCommandsFillTheirSpaceAndSegmentsLieInTheFile) {
    for (const Thin& thin : kThin) {
        SCOPED_TRACE(thin.name);
        const std::string file = executable(*findArchitecture(thin.name), 10'000);
        EXPECT_EQ(file.size() % 4096, 0U);
        const std::size_t header = thin.width == 8 ? 32 : 28;
        const std::uint64_t commands = number(file, 16, 4);
        const std::uint64_t commandsSize = number(file, 20, 4);
        std::size_t at = header;
        std::uint64_t nextAddress = 0;
        std::vector<std::string> segments;
        for (std::uint64_t i = 0; i < commands; ++i) {
            if (number(file, at, 4) == (thin.width == 8 ? 0x19U : 0x1U)) {
                segments.emplace_back(file.c_str() + at + 8);
                const std::size_t fields = at + 24;
                EXPECT_EQ(number(file, fields, thin.width), nextAddress);
                nextAddress += number(file, fields + thin.width, thin.width);
                EXPECT_LE(number(file, fields + 2 * thin.width, thin.width) +
                              number(file, fields + 3 * thin.width, thin.width),
                          file.size());
            }
            at += number(file, at + 4, 4);
        }
        EXPECT_EQ(at, header + commandsSize);
        EXPECT_EQ(segments, (std::vector<std::string>{"__PAGEZERO", "__TEXT", "__LINKEDIT"}));
    }
}

TEST(MachO, FatFileHoldsEachThinFileWholeOnAPage) {
    const std::vector<const Architecture*> list{findArchitecture("ppc"), findArchitecture("i386"),
                                                findArchitecture("x86_64")};
    const std::string file = universalExecutable(list, 5'000);
    ASSERT_EQ(hex(file.substr(0, 8)), "cafebabe00000003");
    std::size_t end = 8 + 20 * list.size();
    for (std::size_t i = 0; i < list.size(); ++i) {
        const std::size_t row = 8 + 20 * i;
        const std::uint32_t offset = test::big32(file, row + 8);
        const std::uint32_t size = test::big32(file, row + 12);
        EXPECT_EQ(test::big32(file, row), list[i]->cpuType);
        EXPECT_EQ(test::big32(file, row + 4) & 0xffffff, list[i]->cpuSubtype);
        EXPECT_EQ(test::big32(file, row + 16), 12U);
        EXPECT_EQ(offset % 4096, 0U);
        EXPECT_GE(offset, end);
        EXPECT_EQ(file.substr(offset, size), executable(*list[i], 5'000));
        end = offset + size;
    }
    EXPECT_EQ(file.size(), end);
}

TEST(MachO, ArchitectureNamesAndNumbersAreUnique) {
    EXPECT_EQ(findArchitecture("vax"), nullptr);
    for (const Architecture& architecture : architectures()) {
        EXPECT_EQ(findArchitecture(architecture.name), &architecture);
        EXPECT_EQ(std::ranges::count_if(architectures(),
                                        [&](const Architecture& other) {
                                            return other.cpuType == architecture.cpuType &&
                                                   other.cpuSubtype == architecture.cpuSubtype;
                                        }),
                  1)
            << architecture.name;
    }
}

} // namespace sweeply::macho
