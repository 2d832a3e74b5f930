#include "platform/Languages.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sstream>

namespace sweeply {
namespace {

TEST(LanguagesTest, EveryNameOfTheTableGetsItsCode) {
    std::ifstream table(SWEEPLY_LANGUAGE_CODES);
    std::size_t rows = 0;
    for (std::string line; std::getline(table, line);) {
        const auto tab = line.find('\t');
        if (line.starts_with('#') || tab == std::string::npos)
            continue;
        ++rows;
        EXPECT_EQ(canonicalLanguageIdentifier(line.substr(0, tab)), line.substr(tab + 1)) << line;
    }
    EXPECT_GT(rows, 280U);
}

TEST(LanguagesTest, StrangeNamesAreNoTrouble) {
    EXPECT_EQ(canonicalLanguageIdentifier("fran\xc3\xa7"
                                          "ais"),
              std::nullopt);
    EXPECT_EQ(canonicalLanguageIdentifier("de@collation=phonebook"), "de@collation=phonebook");
    for (const char* name : {"", "-", "_", "__", "a-", "-b", "de_", "de-_", "@", "de.", "a_b_c_d_e", "zzz", "a\nb"})
        EXPECT_TRUE(canonicalLanguageIdentifier(name)) << name;
    EXPECT_TRUE(canonicalLanguageIdentifier(std::string(100'000, '-')));
}

TEST(LanguagesTest, LanguagesHaveNames) {
    EXPECT_EQ(displayNameOfLanguage("fr"), "French");
    EXPECT_EQ(displayNameOfLanguage("pt-BR"), "Portuguese (Brazil)");
    EXPECT_EQ(displayNameOfLanguage("qqzz"), std::nullopt);
    EXPECT_EQ(displayNameOfLanguage(std::string(10'000, 'x')), std::nullopt);
}

} // namespace
} // namespace sweeply
