#include "formats/PropertyList.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace sweeply::plist {
namespace {

using namespace std::string_literals;

Value everyType() {
    return Value(Dictionary({
        {"zebra first", Value("text & <markup>")},
        {"accents", Value("\xC3\xA9t\xC3\xA9 \xF0\x9F\x98\x80")},
        {"empty", Value("")},
        {"true", Value(true)},
        {"one", Value(1)},
        {"negative", Value(-5)},
        {"least", Value(std::numeric_limits<std::int64_t>::min())},
        {"most", Value(std::numeric_limits<std::uint64_t>::max())},
        {"real", Value(0.1)},
        {"whole real", Value(3.0)},
        {"data", Value(Data{"\0\xFF\x80 bytes"s})},
        {"date", Value(Date{251'942'400})},
        {"always", Value(Date{-63'114'076'800})},
        {"never", Value(Date{63'113'904'000})},
        {"array", Value(Array{Value(false), Value(Array{}), Value(Dictionary{})})},
        {"nested", Value(Dictionary({{"inner", Value(Array{Value("x"), Value(2)})}}))},
    }));
}

std::string xml(const std::string& content) { return "<plist version=\"1.0\">" + content + "</plist>"; }

std::string repeated(std::string_view text, int times) {
    std::string result;
    while (times-- > 0)
        result += text;
    return result;
}

/// A binary list of `objects`, the first being the root, with references of one byte.
std::string binary(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += static_cast<char>(bytes.size() >> 8);
        offsets += static_cast<char>(bytes.size() & 0xFF);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    bytes += offsets + std::string(6, '\0') + "\2\1" + std::string(7, '\0') + static_cast<char>(objects.size()) +
             std::string(8, '\0') + std::string(6, '\0');
    bytes += static_cast<char>(table >> 8);
    bytes += static_cast<char>(table & 0xFF);
    return bytes;
}

TEST(PropertyList, EveryTypeSurvivesBothFormsInOrder) {
    EXPECT_EQ(parse(writeBinary(everyType())).value(), everyType());
    EXPECT_EQ(parse(writeXml(everyType())).value(), everyType());

    const Value archive(
        Dictionary({{"small", Value(Uid{3})}, {"large", Value(Uid{70'000})}, {"instant", Value(Date{0.25})}}));
    EXPECT_EQ(parse(writeBinary(archive)).value(), archive);
    EXPECT_EQ(parse(writeXml(archive))->find("large")->asUid(), Uid{70'000}) << "XML has only a dictionary for it";

    for (const Value& root : {Value("alone"), Value(Array{}), Value(std::numeric_limits<std::uint64_t>::max())})
        EXPECT_EQ(parse(writeBinary(root)).value(), root);
}

TEST(PropertyList, GettersGiveNothingForAnotherType) {
    const Value list = everyType();
    EXPECT_EQ(list.find("zebra first")->asBool(), std::nullopt);
    EXPECT_EQ(list.find("negative")->asUnsigned(), std::nullopt);
    EXPECT_EQ(list.find("most")->asSigned(), std::nullopt);
    EXPECT_EQ(list.find("most")->asUnsigned(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(list.find("true")->asUnsigned(), std::nullopt);
    EXPECT_EQ(list.find("one")->asBool(), true);
    EXPECT_EQ(list.find("one")->asDouble(), 1.0);
    EXPECT_EQ(list.findString("one"), nullptr);
    EXPECT_EQ(list.find("array")->find("inner"), nullptr);
}

TEST(PropertyList, TextsThatNoListCanHoldAreWrittenWithReplacements) {
    const Value odd(Dictionary({{"k\xFF", Value("a\0b\xC0\xAF\xED\xA0\x80\xE2\x82"s)}}));
    for (const std::string& bytes : {writeBinary(odd), writeXml(odd)}) {
        const Value read = parse(bytes).value();
        ASSERT_NE(read.findString("k\xEF\xBF\xBD"), nullptr);
        const std::string r = "\xEF\xBF\xBD";
        EXPECT_EQ(*read.findString("k" + r), "a" + r + "b" + r + r + r + r + r + r + r);
    }
    EXPECT_EQ(*parse(xml("<string>\xFF.log</string>"))->asString(), "\xFF.log");
}

TEST(PropertyList, WhatIsNoListIsRefusedWithAReason) {
    const std::string whole = writeBinary(everyType());
    for (const std::string& bytes :
         {""s, "bplist00"s, "{ Old = Style; }"s,
          "\x7F"
          "ELF"s,
          "<plist>"s, xml("<dict><key>a</key>"), xml("<unknown/>"), xml("<dict><string>no key</string></dict>"),
          "<html><body/></html>"s, whole.substr(0, whole.size() - 1),
          xml("<array a=\">\"><array></array></array>") + "\""}) {
        const auto result = parse(bytes);
        ASSERT_FALSE(result.has_value()) << bytes;
        EXPECT_FALSE(result.error().empty());
    }
}

TEST(PropertyList, NestingIsBounded) {
    const auto nested = [](int depth) { return xml(repeated("<array>", depth) + repeated("</array>", depth)); };
    EXPECT_TRUE(parse(nested(256)).has_value());
    EXPECT_EQ(parse(nested(257)).error(), "nested too deeply");
    EXPECT_EQ(parse(nested(500'000)).error(), "nested too deeply");
    EXPECT_EQ(parse(writeBinary(*parse(nested(256)))), parse(nested(256)));

    EXPECT_FALSE(parse(xml(repeated("<array><!-- </array> -->", 100'000))).has_value());
    EXPECT_FALSE(parse(xml(repeated("<array><?x </array> ?>", 100'000))).has_value());
    EXPECT_FALSE(parse(xml(repeated("<array a=\"></array>\">", 100'000))).has_value());
}

TEST(PropertyList, BinaryReferencesThatLoopOrMultiplyAreRefused) {
    EXPECT_FALSE(parse(binary({"\xA1\x00"s})).has_value()) << "an array that holds itself";

    std::vector<std::string> doubling;
    for (int level = 1; level <= 60; ++level)
        doubling.push_back("\xA2"s + static_cast<char>(level) + static_cast<char>(level));
    doubling.push_back("\x09");
    EXPECT_EQ(parse(binary(doubling)).error(), "holds too much");

    EXPECT_TRUE(parse(binary({"\xA2\x01\x01"s, "\x51x"s})).has_value()) << "sharing alone is no fault";
    EXPECT_FALSE(parse(binary({"\xAF\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s})).has_value());
    EXPECT_FALSE(parse(binary({"\x4F\x12\x7F\xFF\xFF\xFF"s})).has_value());
    EXPECT_FALSE(parse(binary({"\xA1\x05"s})).has_value()) << "a reference to no object";
    EXPECT_FALSE(parse(binary({"\xD1\x01\x01"s, "\x53k\0y"s})).has_value()) << "the library asserts there is none";
    EXPECT_FALSE(parse(binary({"\xD1\x01\x01"s, "\x62\0k\0\0"s})).has_value());
    EXPECT_FALSE(parse(binary({"\xA1\x01"s, "\x53t\0t"s})).has_value()) << "a path would be cut to another";
}

TEST(PropertyList, MutatedFilesAreReadOrRefusedButNeverBreakTheReader) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (const std::string& original : {writeBinary(everyType()), writeXml(everyType())}) {
        for (int round = 0; round < 5'000; ++round) {
            std::string bytes = original;
            for (std::size_t changes = 1 + below(6); changes > 0; --changes)
                bytes[below(bytes.size())] = static_cast<char>(below(256));
            if (below(4) == 0)
                bytes.resize(below(bytes.size()));
            if (const auto value = parse(bytes)) {
                // What was read can be written and read again, and then no longer changes.
                const auto again = parse(writeBinary(*value));
                ASSERT_TRUE(again.has_value());
                EXPECT_EQ(writeBinary(*again), writeBinary(*parse(writeBinary(*again))));
            }
        }
    }
}

} // namespace
} // namespace sweeply::plist
