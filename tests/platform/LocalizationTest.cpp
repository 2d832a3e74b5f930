#include "platform/Localization.h"

#include "platform/Locale.h"
#include "platform/TestFolder.h"

#include <clocale>
#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace sweeply {
namespace {

TEST(FormatText, PlaceholdersTakeTheirKindsOfArguments) {
    EXPECT_EQ(formatText("%@ scan %i and %i", {"Logs", -7, std::numeric_limits<std::uint64_t>::max()}),
              "Logs scan -7 and 18446744073709551615");
    EXPECT_EQ(formatText("%i %i", {true, std::size_t{3}}), "1 3");
    EXPECT_EQ(formatText("100%% of %@", {std::string("all")}), "100% of all");
    EXPECT_EQ(formatText("[%02i] [%4i] [%03i]", {5, 42, -1}), "[05] [  42] [-01]");
    EXPECT_EQ(formatText("%@", {"\xFF\xFE.log"}), "\xFF\xFE.log") << "names are bytes";
    EXPECT_EQ(formatText("%@", {"%i %@"}), "%i %@") << "an argument is no format";
}

TEST(FormatText, RealsAreRoundedAsPrintfDoes) {
    for (const double number : {0.0, 1.005, 2.675, 0.125, 0.375, 9.995, 1023.999, 1e20, -0.001, 10.4})
        for (const char* format : {"%0.2f", "%3.2f", "%f", "%8.1f", "%09.3f", "%.0f"}) {
            char expected[64];
            std::snprintf(expected, sizeof expected, format, number);
            EXPECT_EQ(formatText(format, {number}), expected);
        }
}

TEST(FormatText, WhatDoesNotFitStaysAsWritten) {
    EXPECT_EQ(formatText("%@ and %@", {"one"}), "one and %@");
    EXPECT_EQ(formatText("%i %@ %0.2f", {"text", 1, 2}), "%i %@ %0.2f");
    EXPECT_EQ(formatText("nothing", {"left over"}), "nothing");
    EXPECT_EQ(formatText("50% of %s %n %", {}), "50% of %s %n %");
    EXPECT_EQ(formatText("%999999999i", {1}), "%999999999i");
    EXPECT_EQ(formatText("%0.99f", {std::numeric_limits<double>::max()}).size(), 309U + 1 + 99);
}

TEST(FormatText, OnlyTheSamePlaceholdersInTheSameOrderAreTheSame) {
    EXPECT_TRUE(haveSamePlaceholders("%0.2f of %@ 100%%", "von %1.1f, %@"));
    EXPECT_FALSE(haveSamePlaceholders("%@ has %i", "%i hat %@"));
    EXPECT_FALSE(haveSamePlaceholders("%@", "%@ %@"));
    EXPECT_FALSE(haveSamePlaceholders("%@", "ohne"));
    EXPECT_FALSE(haveSamePlaceholders("%i", "%f"));
}

/// A compiled catalogue as msgfmt writes it.
std::string catalogue(const std::map<std::string, std::string>& entries) {
    std::string tables[2];
    std::string texts;
    const auto word = [](std::size_t number) {
        const auto value = static_cast<std::uint32_t>(number);
        return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const std::size_t textsStart = 28 + 16 * entries.size();
    for (const auto& [key, translation] : entries)
        for (int side = 0; side < 2; ++side) {
            const std::string& text = side == 0 ? key : translation;
            tables[side] += word(text.size()) + word(textsStart + texts.size());
            texts += text + '\0';
        }
    return word(0x950412de) + word(0) + word(entries.size()) + word(28) + word(28 + tables[0].size()) + word(0) +
           word(textsStart) + tables[0] + tables[1] + texts;
}

using Variables = std::map<std::string, std::string>;

/// The process's, for the time being. What is not named is not set.
class Environment final {
  public:
    explicit Environment(const Variables& variables) {
        forgetAll();
        for (const auto& [name, value] : variables)
            setenv(name.c_str(), value.c_str(), 1);
    }
    ~Environment() {
        forgetAll();
        bindTextDomain("/nothing");
        std::setlocale(LC_ALL, "C");
    }

  private:
    static void forgetAll() {
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
            unsetenv(name);
    }
};

TEST(Localization, TranslationsAreUsedUnlessTheirPlaceholdersLie) {
    const TestFolder folder;
    folder.write("de/LC_MESSAGES/sweeply.mo", catalogue({{"", "Content-Type: text/plain; charset=UTF-8\n"},
                                                         {"Quit Sweeply?", "Sweeply beenden?"},
                                                         {"Scan", "Suche"},
                                                         {"Buttons\004Scan", "Suchen"},
                                                         {"Found: %@", "Gefunden: %@"},
                                                         {"%@ of %i", "%i von %@"},
                                                         {"%@ files", "%s%n%n Dateien"}}));
    const Environment environment(Variables{{"LANG", "de_DE.UTF-8"}}); // which nobody has generated
    bindTextDomain(folder.path());
    EXPECT_EQ(localizedString("Quit Sweeply?"), "Sweeply beenden?");
    EXPECT_EQ(localizedString("Scan"), "Suche");
    EXPECT_EQ(localizedButton("Scan"), "Suchen");
    EXPECT_EQ(localizedButton("Quit Sweeply?"), "Quit Sweeply?") << "no button of that title";
    EXPECT_EQ(localizedString("Not translated"), "Not translated");
    EXPECT_EQ(localizedString(""), "") << "not the catalogue's header";
    EXPECT_EQ(localizedFormat("Found: %@", {"4 KB"}), "Gefunden: 4 KB");
    EXPECT_EQ(localizedFormat("%@ of %i", {"a", 2}), "a of 2");
    EXPECT_EQ(localizedFormat("%@ files", {"3"}), "3 files");
    bindTextDomain(folder.path("missing"));
    EXPECT_EQ(localizedFormat("Found: %@", {"4 KB"}), "Found: 4 KB");
}

TEST(Localization, LanguageIsTheEnvironmentsWithoutAnyLocale) {
    const TestFolder folder;
    for (const char* language : {"de", "fr", "pt_BR"})
        folder.write(std::string(language) + "/LC_MESSAGES/sweeply.mo", catalogue({{"Scan", language}}));
    folder.write("es/LC_MESSAGES/sweeply.mo", catalogue({{"Scan", "es"}}).substr(0, 40));
    const struct {
        Variables variables;
        const char* language;
    } rows[] = {
        {{}, "Scan"},
        {{{"LANG", "de_DE.UTF-8"}}, "de"},
        {{{"LANG", "de_AT@euro"}}, "de"},
        {{{"LANG", "pt_BR"}}, "pt_BR"},
        {{{"LANG", "pt_PT.UTF-8"}}, "Scan"},
        {{{"LANG", "de_DE"}, {"LC_MESSAGES", "fr_FR"}}, "fr"},
        {{{"LANG", "de_DE"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "C"}}, "Scan"},
        {{{"LANG", "de_DE"}, {"LC_ALL", ""}}, "de"},
        {{{"LANG", "de_DE"}, {"LANGUAGE", "it:fr:de"}}, "fr"},
        {{{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}, "de"},
        {{{"LANG", "C"}, {"LANGUAGE", "de"}}, "Scan"},
        {{{"LANGUAGE", "de"}}, "Scan"},
        {{{"LANG", "de_DE"}, {"LANGUAGE", "en_GB:de"}}, "Scan"},
        {{{"LANG", "de_DE"}, {"LANGUAGE", "es:../de:/de::fr"}}, "fr"},
    };
    for (const auto& row : rows) {
        const Environment environment(row.variables);
        bindTextDomain(folder.path());
        EXPECT_EQ(localizedString("Scan"), row.language) << testing::PrintToString(row.variables);
    }
}

TEST(Locale, DatesFallBackToEnglish) {
    const Locale locale("no_SUCH.locale");
    EXPECT_EQ(locale.formatDate(1'236'427'200), "March  7, 2009");
}

} // namespace
} // namespace sweeply
