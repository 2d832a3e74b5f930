#include "formats/BomReader.h"

#include "formats/BigEndian.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <map>

namespace sweeply::bom {
namespace {

using test::big32;
using test::bigEndian;
using testing::ElementsAre;
using testing::HasSubstr;

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

Entry file(std::string path) {
    return {std::move(path), EntryType::File, 0100644, 501, 20, 0x4e000000, 5, checksum("12345"), {}, 0};
}

std::string billOf(const std::vector<std::string>& paths) {
    std::vector<Entry> entries;
    for (const auto& path : paths)
        entries.push_back(file(path));
    return write(entries);
}

std::vector<std::string> pathsIn(const std::string& bytes) {
    std::vector<std::string> paths;
    const auto listed = read(bytes, [&](const Entry& entry) { paths.push_back(entry.path); });
    if (!listed)
        paths.push_back("error: " + listed.error());
    return paths;
}

TEST(BillOfMaterialsTest, ChecksumIsThatOfCksum) {
    EXPECT_EQ(checksum(""), 4294967295U);
    EXPECT_EQ(checksum("exec"), 3978536659U);
    EXPECT_EQ(checksum("hello, world !\n"), 2919626162U);
}

TEST(BillOfMaterialsTest, SiblingsAreStoredTogetherAndReadBelowTheirFolder) {
    const std::string bytes = billOf({"b/two", "a b", "b/inner/one", "b.c"});
    const Bill bill(bytes);
    EXPECT_THAT(bill.paths, ElementsAre(".", "./a b", "./b", "./b.c", "./b/inner", "./b/two", "./b/inner/one"));
    EXPECT_EQ(bigEndian(bill.attributes.at("./b/inner"), 4, 2), 040755U);
    EXPECT_EQ(bigEndian(bill.attributes.at("./b/inner"), 0, 1), 2U);
    EXPECT_THAT(pathsIn(bytes), ElementsAre(".", "a b", "b", "b/inner", "b/inner/one", "b/two", "b.c"));
}

TEST(BillOfMaterialsTest, AttributesLieWhereReadersLookAndAreReadAgain) {
    const Entry link{"link", EntryType::SymbolicLink, 0120755, 501, 20, 1'200'000'000, 10, 99, "some where", 0};
    const Entry device{"disk", EntryType::Device, 060640, 0, 0, 0, 0, 0, {}, 0x0e000002};
    const std::string bytes = write({file("plain"), link, device});
    const Bill bill(bytes);
    const std::string& plain = bill.attributes.at("./plain");
    EXPECT_EQ(bigEndian(plain, 0, 2), 0x0101U);
    EXPECT_EQ(bigEndian(plain, 4, 2), 0100644U);
    const std::uint32_t fields[]{501, 20, 0x4e000000, 5};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(big32(plain, 6 + 4 * i), fields[i]) << i;
    EXPECT_EQ(big32(plain, 23), checksum("12345"));
    EXPECT_EQ(big32(bill.attributes.at("./link"), 27), 11U);
    EXPECT_STREQ(bill.attributes.at("./link").c_str() + 31, "some where");
    EXPECT_EQ(big32(bill.attributes.at("./disk"), 23), 0x0e000002U);
    const auto all = [](const Entry& e) {
        return std::tie(e.type, e.mode, e.owner, e.group, e.modified, e.size, e.checksum, e.linkTarget, e.device);
    };
    std::map<std::string, Entry> found;
    ASSERT_TRUE(read(bytes, [&](const Entry& entry) { found[entry.path] = entry; }));
    for (const Entry& entry : {file("plain"), link, device})
        EXPECT_EQ(all(found[entry.path]), all(entry)) << entry.path;
}

TEST(BillOfMaterialsTest, MoreEntriesThanANodeHoldsGrowATreeThatStaysSorted) {
    std::vector<std::string> paths;
    for (int i = 0; i < 70'000; ++i)
        paths.push_back("folder" + std::to_string(i % 7) + "/" + std::to_string(i));
    const std::string bytes = billOf(paths);
    const Bill bill(bytes);
    EXPECT_EQ(bill.paths.size(), 70'000U + 7 + 1);
    EXPECT_EQ(bill.attributes.size(), bill.paths.size());
    EXPECT_TRUE(std::ranges::is_sorted(bill.keys));
    EXPECT_EQ(bill.depth(), 2);
    EXPECT_EQ(pathsIn(bytes).size(), bill.paths.size());
}

TEST(BomReaderTest, DamageIsAnErrorAndNothingIsHandedOn) {
    const auto whole = billOf({"a/b", "a/c"});
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        std::size_t handedOn = 0;
        const auto listed = read(whole.substr(0, length), [&](const Entry&) { ++handedOn; });
        EXPECT_TRUE(listed || handedOn == 0);
    }
    for (const auto& [from, to] : {std::pair("tree", "tres"), {"Paths", "Pfads"}}) {
        auto bad = whole;
        bad.replace(bad.find(from), std::string(from).size(), to);
        EXPECT_THAT(pathsIn(bad), ElementsAre(HasSubstr("error: "))) << to;
    }
}

TEST(BomReaderTest, WhatCannotBeIsLeftOutAndTheRestHandedOn) {
    // "." has the number 1, "a" 2, "a/bb" 3, "a/cc" 4, "dd" 5; a name stands behind its folder's number.
    const std::string whole = billOf({"a/bb", "a/cc", "dd"});
    const struct {
        std::string from, to, paths;
        std::size_t leftOut;
        const char* reason;
    } rows[]{
        {"bb", "..", ". a a/cc dd", 1, "a path has a name that no file can have"},
        {"bb", "/b", ". a a/cc dd", 1, "a path has a name that no file can have"},
        {{"\2bb", 3}, {"\2\0b", 3}, ". a a/cc dd", 1, "a path has a name that no file can have"},
        {{"\1a", 2}, "\1/", ". dd", 3, "a path has a name that no file can have"},
        {{"\1a", 2}, "\2a", ". dd", 3, "a path lies in a folder that is not listed"},
        {{"\2bb", 3}, "\7bb", ". a a/cc dd", 1, "a path lies in a folder that is not listed"},
        {{"\5\0\0\0\x8", 5}, {"\2\0\0\0\x8", 5}, ". a a/bb a/cc", 1, "two paths have the same number"},
        {{"\5\0\0\0\x8", 5}, {"\0\0\0\0\x8", 5}, ". a a/bb a/cc", 1, "a path's record is damaged"},
        {{"\5\0\0\0\x8", 5}, {"\5\0\0\0\xff", 5}, ". a a/bb a/cc", 1, "a path's record is damaged"},
        {{"\0\1\0\5", 4}, {"\0\1\0\6", 4}, ". a a/bb a/cc dd", 1, "a path's record is missing"},
        {{"\0\1\0\5", 4}, {"\0\1\xff\xff", 4}, "error", 0, "its tree of paths is damaged"},
    };
    for (const auto& row : rows) {
        auto bad = whole;
        const auto at = bad.rfind(row.from);
        ASSERT_NE(at, std::string::npos) << row.reason;
        bad.replace(at, row.to.size(), row.to);
        std::string paths;
        const auto listed = read(bad, [&](const Entry& entry) { paths += " " + entry.path; });
        EXPECT_EQ(listed ? paths : " error", " " + row.paths) << row.reason;
        EXPECT_EQ(listed ? listed->reason : listed.error(), row.reason) << row.paths;
        EXPECT_EQ(listed ? listed->count : 0, row.leftOut) << row.reason;
    }
    EXPECT_EQ(pathsIn(billOf({std::string(1024, 'n'), std::string(1025, 'n')})).size(), 2U);
}

} // namespace
} // namespace sweeply::bom
