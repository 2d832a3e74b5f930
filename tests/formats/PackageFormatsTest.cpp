#include "formats/KeyedArchive.h"
#include "formats/PackageInfo.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

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
