#include "platform/StringExtras.h"

#include "platform/Suggestion.h"
#include "platform/Volume.h"

namespace sweeply {
namespace {

TEST(StringExtrasTest, SubstituteReplacesEveryCharacterOfTheSet) {
    EXPECT_EQ(stringWithSubstitute("a/b:c", "-", "/:"), "a-b-c");
    EXPECT_EQ(stringWithSubstitute("unchanged", "-", "/:"), "unchanged");
    EXPECT_EQ(stringWithSubstitute("//", "", "/"), "");
    EXPECT_EQ(stringWithSubstitute("naïve ö", "?", "ïä"), "na?ve ö"); // ö shares its first byte with ï
    EXPECT_EQ(stringWithSubstitute("\xc3", "?", "ï"), "\xc3");
    EXPECT_EQ(stringWithSubstitute("a/a", "/", "/"), "a/a");
}

TEST(StringExtrasTest, WhiteSpaceOfAnyScriptIsTrimmedAtTheEndsOnly) {
    EXPECT_EQ(trimWhiteSpace(" \t\r\na b\n "), "a b");
    EXPECT_EQ(trimWhiteSpace("\u00A0\u3000a\u2003b\u2028"), "a\u2003b");
    EXPECT_EQ(trimWhiteSpace(" \n"), "");
    EXPECT_EQ(trimWhiteSpace("\xe3\x80"), "\xe3\x80"); // cut short
    EXPECT_TRUE(stringIsEmpty(std::nullopt));
    EXPECT_TRUE(stringIsEmpty(" \u00A0"));
    EXPECT_FALSE(stringIsEmpty(" a"));
}

TEST(StringExtrasTest, PiecesBetweenSingleSpacesAreCountedAndCompared) {
    EXPECT_EQ(ellipsizeAfterNWords("one two three", 2), "one two");
    EXPECT_EQ(ellipsizeAfterNWords("one two", 5), "one two");
    EXPECT_EQ(ellipsizeAfterNWords("one  two", 2), "one ");
    EXPECT_EQ(ellipsizeAfterNWords("one", 0), "");
    EXPECT_EQ(compareByWords("Photo Pro", "Pro Maker Photo"), 0);
    EXPECT_EQ(compareByWords("Photo Photo", "Photo"), 0);
    EXPECT_EQ(compareByWords("photo", "Photo"), -1);
    EXPECT_EQ(compareByWords("Photo Pro", "Photo"), -1);
    EXPECT_EQ(compareByWords("", "Photo"), -1); // one empty piece, and "Photo" has none
    EXPECT_EQ(compareByWords("", "a  b"), 0);
}

TEST(StringExtrasTest, FolderKeepsItsExtension) {
    const TestVolume volume;
    volume.makeFolder("/plug/Bundle.app");
    volume.write("/plug/file.tar.gz");
    for (const auto& [name, stripped] : {std::pair("Bundle.app", "Bundle.app"),
                                         {"file.tar.gz", "file.tar"},
                                         {"missing.app", "missing"},
                                         {"app.x.app", "app.x"},
                                         {".hidden", ".hidden"},
                                         {"plain", "plain"}})
        EXPECT_EQ(stringByDeletingRealPathExtension(name, "/plug", volume.files()), stripped);
}

TEST(StringExtrasTest, LettersOfEveryScriptBecomeSmall) {
    EXPECT_EQ(lowercaseString("FooÄÉБ.Plist"), "fooäéб.plist");
    EXPECT_EQ(lowercaseString("A\xC3(Ä"), "a\xC3(Ä") << "no valid text: only what surely is a letter";
}

TEST(StringExtrasTest, TagsBecomeSpaces) {
    EXPECT_EQ(stripHTML("<b>bold</b> text"), " bold  text");
    EXPECT_EQ(stripHTML("a<x<y>z>b"), "a b");
    EXPECT_EQ(stripHTML("a > lost <kept> lost"), "a kept"); // the stray one leaves the depth one too low
    EXPECT_EQ(stripHTML("open <b"), "open ");
}

TEST(StringExtrasTest, UrlEscapesFollowTheirOwnTable) {
    EXPECT_EQ(stringByEncodingURLEscapes("a+b %~"), "a b %~");
    EXPECT_EQ(stringByEncodingURLEscapes("\n\x7f\xc3\xa9"), "%0a%7f%c3%a9");
    EXPECT_EQ(stringByDecodingURLEscapes("a+b c%41%6a%6A"), "a b+cAjj");
    EXPECT_EQ(stringByDecodingURLEscapes("%4g!%zz"), "?!?");
    EXPECT_EQ(stringByDecodingURLEscapes("cut%4"), "cut?");
    EXPECT_EQ(stringByDecodingURLEscapes("%c3%a9"), std::nullopt);
}

TEST(StringExtrasTest, HexDigitsOutsideTheRangeAreRefused) {
    EXPECT_EQ(intToHex(9), '9');
    EXPECT_EQ(intToHex(15), 'f');
    EXPECT_EQ(intToHex(16), '\0');
    EXPECT_EQ(intToHex(-1), '\0');
    EXPECT_EQ(hexToInt('F'), 15);
    EXPECT_EQ(hexToInt('a'), 10);
    EXPECT_EQ(hexToInt('g'), -1);
}

TEST(Suggestion, CountsSlipsAndSuggestsOnlyWhatIsClose) {
    const struct {
        const char *text, *other;
        std::size_t distance;
    } rows[]{{"", "", 0},         {"", "abc", 3},           {"scan", "SCAN", 0},
             {"scna", "scan", 1}, {"kitten", "sitting", 3}, {"ca", "abc", 3}};
    for (const auto& row : rows) {
        EXPECT_EQ(editDistance(row.text, row.other), row.distance) << row.text;
        EXPECT_EQ(editDistance(row.other, row.text), row.distance) << row.other;
    }
    const std::vector<std::string> known{"scan", "size", "sample"};
    EXPECT_EQ(suggestionFor("sacn", known), " (did you mean 'scan'?)");
    EXPECT_EQ(suggestionFor("simple", known), " (did you mean 'sample'?)");
    for (const auto& unlike : {std::string("rm"), std::string(), std::string(100000, 's')})
        EXPECT_EQ(suggestionFor(unlike, known), "");
}

} // namespace
} // namespace sweeply
