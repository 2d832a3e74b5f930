#include "formats/DisplayEscapes.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

TEST(DisplayEscapes, NothingBreaksTheLineCommandsATerminalOrTurnsTheText) {
    const struct {
        std::string text, shown;
    } rows[]{
        {"étoile 日本 \U0001F600", "étoile 日本 \U0001F600"},
        {"e\u0301, a\u200db, \u00a0", "e\u0301, a\u200db, \u00a0"},
        {"a\nsudo: root\r\t", "a\\nsudo: root\\r\\t"},
        {"\x1B[31mred\x7F\b", "\\x1b[31mred\\x7f\\x08"},
        {std::string("nul\0", 4), "nul\\x00"},
        {"a\\nb", "a\\\\nb"},
        {"\u0080\u009b2J\u00ad", "\\u0080\\u009b2J\u00ad"},
        {"\u202etxt.exe\u202c \u2066x\u2069", "\\u202etxt.exe\\u202c \\u2066x\\u2069"},
        {"\u200e\u200f\u061c\u2028\u2029", "\\u200e\\u200f\\u061c\\u2028\\u2029"},
        {"no\xff\xfeutf8 \xe2\x80", "no\\xff\\xfeutf8 \\xe2\\x80"},
        {"\xc0\xaf \xed\xa0\x80 \x9b", "\\xc0\\xaf \\xed\\xa0\\x80 \\x9b"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(escapedForDisplay(row.text), row.shown);
    EXPECT_EQ(escapedAroundNames(escapedForDisplay("a\\b\n") + "\n"), "a\\\\b\\n\\n") << "names are escaped once";
}

} // namespace
} // namespace sweeply
