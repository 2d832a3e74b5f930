#include "formats/BillOfMaterials.h"

#include "formats/BigEndian.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace sweeply::bom {

namespace {

using test::big32;
using test::bigEndian;
using testing::ElementsAre;

/// Walks a bill the plain way and keeps everything in the order that it is stored.
class Bill {
  public:
    explicit Bill(const std::string& file) : m_file(file) {
        EXPECT_EQ(m_file.substr(0, 8), "BOMStore");
        EXPECT_EQ(big32(m_file, 16) + big32(m_file, 20), m_file.size());
        const std::string tree = block(named("Paths"));
        EXPECT_EQ(tree.substr(0, 4), "tree");
        std::uint32_t node = big32(tree, 8);
        while (bigEndian(block(node), 0, 2) == 0) {
            node = big32(block(node), 12);
            ++m_depth;
        }
        for (std::uint32_t before = 0; node != 0;) {
            const std::string leaf = block(node);
            EXPECT_EQ(big32(leaf, 8), before);
            readLeaf(leaf);
            before = node;
            node = big32(leaf, 4);
        }
        EXPECT_EQ(big32(tree, 16), paths.size());
    }

    std::vector<std::string> paths;
    std::map<std::string, std::string> attributes;
    std::vector<std::pair<std::uint32_t, std::string>> keys;
    [[nodiscard]] int depth() const { return m_depth; }

  private:
    [[nodiscard]] std::string block(std::uint32_t number) const {
        const std::size_t row = big32(m_file, 16) + 4 + 8 * std::size_t{number};
        return m_file.substr(big32(m_file, row), big32(m_file, row + 4));
    }

    [[nodiscard]] std::uint32_t named(std::string_view name) const {
        std::size_t at = big32(m_file, 24) + 4;
        for (std::uint32_t i = 0; i < big32(m_file, big32(m_file, 24)); ++i) {
            const auto length = static_cast<std::size_t>(bigEndian(m_file, at + 4, 1));
            if (m_file.substr(at + 5, length) == name)
                return big32(m_file, at);
            at += 5 + length;
        }
        ADD_FAILURE() << "no block is named " << name;
        return 0;
    }

    void readLeaf(const std::string& leaf) {
        for (std::size_t i = 0; i < bigEndian(leaf, 2, 2); ++i) {
            const std::string info = block(big32(leaf, 12 + 8 * i));
            const std::string file = block(big32(leaf, 16 + 8 * i));
            const std::uint32_t parent = big32(file, 0);
            keys.emplace_back(parent, file.c_str() + 4);
            std::string path = parent == 0 ? keys.back().second : m_byNumber.at(parent) + "/" + keys.back().second;
            m_byNumber[big32(info, 0)] = path;
            attributes[path] = block(big32(info, 4));
            paths.push_back(std::move(path));
        }
    }

    const std::string& m_file;
    std::map<std::uint32_t, std::string> m_byNumber;
    int m_depth = 0;
};

Entry file(std::string path, std::string_view contents) {
    Entry entry;
    entry.path = std::move(path);
    entry.mode = 0100644;
    entry.owner = 501;
    entry.group = 20;
    entry.modified = 0x4e000000;
    entry.size = static_cast<std::uint32_t>(contents.size());
    entry.checksum = checksum(contents);
    return entry;
}

} // namespace

TEST(BillOfMaterials, ChecksumIsThatOfCksum) {
    EXPECT_EQ(checksum(""), 4294967295U);
    EXPECT_EQ(checksum("exec"), 3978536659U);
    EXPECT_EQ(checksum("hello, world !\n"), 2919626162U);
}

TEST(BillOfMaterials, EntriesWithoutTheirFoldersAreStoredSiblingsTogetherUnderThem) {
    const std::string bytes = write({file("b/two", "2"), file("a b", ""), file("b/inner/one", "1")});
    const Bill bill(bytes);
    EXPECT_THAT(bill.paths, ElementsAre(".", "./a b", "./b", "./b/inner", "./b/two", "./b/inner/one"));
    EXPECT_EQ(bigEndian(bill.attributes.at("./b/inner"), 4, 2), 040755U);
    EXPECT_EQ(bigEndian(bill.attributes.at("./b/inner"), 0, 1), 2U);
}

TEST(BillOfMaterials, AttributesOfFilesLinksAndDevicesLieWhereReadersLook) {
    Entry link = file("link", "some where");
    link.type = EntryType::SymbolicLink;
    link.mode = 0120755;
    link.linkTarget = "some where";
    Entry device;
    device.path = "disk";
    device.type = EntryType::Device;
    device.mode = 060640;
    device.device = 0x0e000002;
    const std::string bytes = write({file("plain", "12345"), link, device});
    const Bill bill(bytes);

    const std::string& plain = bill.attributes.at("./plain");
    EXPECT_EQ(bigEndian(plain, 0, 2), 0x0101U);
    EXPECT_EQ(bigEndian(plain, 4, 2), 0100644U);
    EXPECT_EQ(big32(plain, 6), 501U);
    EXPECT_EQ(big32(plain, 10), 20U);
    EXPECT_EQ(big32(plain, 14), 0x4e000000U);
    EXPECT_EQ(big32(plain, 18), 5U);
    EXPECT_EQ(big32(plain, 23), checksum("12345"));

    const std::string& target = bill.attributes.at("./link");
    EXPECT_EQ(big32(target, 27), 11U);
    EXPECT_STREQ(target.c_str() + 31, "some where");
    EXPECT_EQ(big32(bill.attributes.at("./disk"), 23), 0x0e000002U);
}

TEST(BillOfMaterials, MoreEntriesThanANodeHoldsGrowATreeThatStaysSorted) {
    std::vector<Entry> entries;
    for (int i = 0; i < 70'000; ++i)
        entries.push_back(file("folder" + std::to_string(i % 7) + "/" + std::to_string(i), ""));
    const std::string bytes = write(entries);
    const Bill bill(bytes);
    EXPECT_EQ(bill.paths.size(), 70'000U + 7 + 1);
    EXPECT_EQ(bill.attributes.size(), bill.paths.size());
    EXPECT_TRUE(std::ranges::is_sorted(bill.keys));
    EXPECT_EQ(bill.depth(), 2);
}

} // namespace sweeply::bom
