#include "formats/BomReader.h"
#include "formats/KeyedArchive.h"
#include "formats/PackageInfo.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string billOf(const std::vector<std::string>& paths) {
    std::vector<bom::Entry> entries;
    for (const auto& path : paths) {
        bom::Entry entry;
        entry.path = path;
        entry.mode = 0100644;
        entry.size = 7;
        entries.push_back(entry);
    }
    return bom::write(entries);
}

std::vector<std::string> pathsIn(const std::string& bytes) {
    std::vector<std::string> paths;
    const auto listed = bom::read(bytes, [&](const bom::Entry& entry) { paths.push_back(entry.path); });
    if (!listed)
        paths.push_back("error: " + listed.error());
    return paths;
}

TEST(BomReaderTest, FoldersStandBeforeWhatIsInThemAndSiblingsByName) {
    EXPECT_THAT(pathsIn(billOf({"b/c", "b/a/x", "a b", "b.c"})),
                ElementsAre(".", "a b", "b", "b/a", "b/a/x", "b/c", "b.c"));
    std::vector<std::string> many;
    for (int i = 0; i < 5000; ++i)
        many.push_back("folder " + std::to_string(i % 70) + "/file " + std::to_string(i));
    EXPECT_EQ(pathsIn(billOf(many)).size(), 5000U + 70U + 1U);
}

TEST(BomReaderTest, EverythingThatIsWrittenIsRead) {
    bom::Entry link;
    link.path = "usr/link";
    link.type = bom::EntryType::SymbolicLink;
    link.mode = 0120755;
    link.owner = 501;
    link.group = 20;
    link.modified = 1'200'000'000;
    link.size = 4;
    link.checksum = 99;
    link.linkTarget = "exec";
    bom::Entry found;
    ASSERT_TRUE(bom::read(bom::write({link}), [&](const bom::Entry& entry) {
        if (entry.path == link.path)
            found = entry;
    }));
    EXPECT_EQ(found.linkTarget, "exec");
    EXPECT_EQ(std::tie(found.mode, found.owner, found.group, found.modified, found.size, found.checksum),
              std::tie(link.mode, link.owner, link.group, link.modified, link.size, link.checksum));
}

TEST(BomReaderTest, DamageIsAnErrorAndNothingIsHandedOn) {
    const auto whole = billOf({"a/b", "a/c"});
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        std::size_t handedOn = 0;
        const auto listed = bom::read(whole.substr(0, length), [&](const bom::Entry&) { ++handedOn; });
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
        const auto read = bom::read(bad, [&](const bom::Entry& entry) { paths += " " + entry.path; });
        EXPECT_EQ(read ? paths : " error", " " + row.paths) << row.reason;
        EXPECT_EQ(read ? read->reason : read.error(), row.reason) << row.paths;
        EXPECT_EQ(read ? read->count : 0, row.leftOut) << row.reason;
    }
    EXPECT_EQ(pathsIn(billOf({std::string(1024, 'n'), std::string(1025, 'n')})).size(), 2U);
}

TEST(KeyedArchiveTest, WhatIsWrittenIsReadAndIsARealArchive) {
    KeyedArchiveWriter writer;
    const auto name = writer.addText("name");
    const auto first = writer.addObject("Package", {{"name", name}, {"path", KeyedArchiveWriter::kNil}, {"type", 2}});
    const auto list = writer.addArray({first, first});
    const auto bytes = writer.finish(writer.addDictionary({writer.addText("pkgs")}, {list}));
    EXPECT_TRUE(bytes.starts_with("bplist00"));
    const auto archive = KeyedArchive::parse(bytes);
    ASSERT_TRUE(archive);
    const auto elements = archive->elements(archive->valueForKey(archive->root(), "pkgs"));
    ASSERT_EQ(elements.size(), 2U);
    EXPECT_EQ(*archive->member(*elements[0], "name")->asString(), "name");
    EXPECT_EQ(archive->member(*elements[0], "path"), nullptr);
    EXPECT_EQ(archive->member(*elements[0], "type")->asSigned(), 2);
    EXPECT_EQ(archive->valueForKey(archive->root(), "other"), nullptr);
}

TEST(KeyedArchiveTest, DamagedOnesAreErrorsOrHoldNothing) {
    for (const std::string& bytes : {std::string(), std::string("bplist00"), plist::writeBinary(plist::Value(1)),
                                     plist::writeXml(plist::Dictionary({{"$objects", 1}, {"$top", 2}}))})
        EXPECT_FALSE(KeyedArchive::parse(bytes));
    const auto far = KeyedArchive::parse(plist::writeBinary(plist::Dictionary(
        {{"$objects", plist::Array{}},
         {"$top", plist::Dictionary(std::vector<plist::Dictionary::Member>{{"root", plist::Uid{900}}})}})));
    ASSERT_TRUE(far);
    EXPECT_EQ(far->root(), nullptr);
    EXPECT_TRUE(far->elements(far->root()).empty());
}

TEST(PackageInfoTest, AttributesAreReadAndNonsenseIsAnError) {
    const auto info =
        parsePackageInfo("<?xml version=\"1.0\"?><pkg-info identifier=\"com.x\" install-location=\"/A\"/>");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->identifier + info->installLocation.value(), "com.x/A");
    EXPECT_EQ(parsePackageInfo("<pkg-info identifier=\"com.x\"/>")->installLocation, std::nullopt);
    for (const char* bad : {"", "text", "<pkg-info", "<a></b>"})
        EXPECT_FALSE(parsePackageInfo(bad)) << bad;
}

} // namespace
} // namespace sweeply
