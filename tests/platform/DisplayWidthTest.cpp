#include "platform/DisplayWidth.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(DisplayWidth, CountsTheColumnsOfWideAndCombiningCharacters) {
    const struct {
        const char* text;
        std::size_t width;
    } rows[]{{"", 0},           {"étoile", 6},   {"e\u0301toile", 6}, {"日本", 4},
             {"ﾊﾝ", 2},         {"Ａ", 2},       {"한국", 4},         {"ᄒ\u1161\u11ab", 2},
             {"\U0001F600", 2}, {"a\u200bb", 2}, {"\u0646\u0651", 1}, {"\u00ad-", 2}};
    for (const auto& row : rows)
        EXPECT_EQ(displayWidth(row.text), row.width) << row.text;
    EXPECT_EQ(cutToWidth("日本語", 5), "日本");
    EXPECT_EQ(cutToWidth("ae\u0301x", 2), "ae\u0301");
    EXPECT_EQ(cutToWidth("ab", 0), "");
}

} // namespace
} // namespace sweeply
