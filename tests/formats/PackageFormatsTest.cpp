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
    for (const auto& [from, to] : {std::pair("\2b", "\2/"), {"tree", "tres"}, {"Paths", "Pfads"}}) {
        auto bad = whole;
        const auto at = bad.find(from);
        ASSERT_NE(at, std::string::npos);
        bad.replace(at, std::string(from).size(), to);
        EXPECT_THAT(pathsIn(bad), ElementsAre(HasSubstr("error: "))) << to;
    }
    auto dots = billOf({"a/bb"});
    dots.replace(dots.rfind("bb"), 2, "..");
    EXPECT_THAT(pathsIn(dots), ElementsAre(HasSubstr("a name that no file can have")));
    // A folder that lies in itself: the record of "a" names its own number as its folder's.
    auto circle = whole;
    const auto file = circle.rfind(std::string("\0\0\0\1a\0", 6));
    ASSERT_NE(file, std::string::npos);
    circle[file + 3] = '\2';
    EXPECT_THAT(pathsIn(circle), ElementsAre(HasSubstr("error: ")));
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
