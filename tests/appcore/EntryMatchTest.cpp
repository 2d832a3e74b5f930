#include "appcore/ownership/EntryMatch.h"

#include <gtest/gtest.h>

namespace sweeply {
namespace {

constexpr auto kBoth = SearchTerms::IdentifierAndName;

/// "RULE STRENGTH TERM" of the match of an entry with "Notes.app", com.acme.notes, that calls itself "Acme Notes".
std::string match(const std::string& name, SearchTerms terms, const std::string& realName = {},
                  const ApplicationTerms& application = {"/Applications/Notes.app", "com.acme.notes", "Acme Notes"}) {
    const auto found = matchOf({name, realName.empty() ? name : realName, terms}, application);
    return found ? std::string(nameOf(found->rule)) + " " + std::string(nameOf(found->strength)) + " " + found->term
                 : "none";
}

TEST(EntryMatchTest, StrengthFollowsFromHowMuchOfTheNameMatches) {
    const struct {
        const char* name;
        SearchTerms terms;
        const char* expected;
        const char* realName = "";
    } kRows[] = {
        {"com.acme.notes", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.plist", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.plist.lockfile", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.savedState", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.LSSharedFileList.plist", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.binarycookies", kBoth, "identifier certain com.acme.notes"},
        {"com.acme.notes.helper.plist", kBoth, "identifier likely com.acme.notes"},
        {"com.acme.notes-old", kBoth, "identifier likely com.acme.notes"},
        {"com.acme.notes_1", kBoth, "identifier likely com.acme.notes"},
        {"com.acme.notes copy.plist", kBoth, "identifier likely com.acme.notes"},
        {"com.acme.notespro.plist", kBoth, "identifier weak com.acme.notes"},
        {"org.com.acme.notes.plist", kBoth, "identifier weak com.acme.notes"},
        {"com.acme.Notes.plist", kBoth, "none"},
        {"com.acme.notes.001f5b3a9c0d.plist", kBoth, "identifier likely com.acme.notes"},
        {"com.acme.notes.001F5b3a9c0d.plist", SearchTerms::HostIdentifier, "identifier certain com.acme.notes"},
        {"com.acme.notes.6F9619FF-8B86-D011-B42D-00C04FC964FF.plist", SearchTerms::HostIdentifier,
         "identifier certain com.acme.notes"},
        {"com.acme.notes.6F9619FF-8B86-D011-B42D-00C04FC964F.plist", SearchTerms::HostIdentifier,
         "identifier likely com.acme.notes"},
        {"com.acme.notes.001f5b3a9c0.plist", SearchTerms::HostIdentifier, "identifier likely com.acme.notes"},
        {"com.acme.notes.helper.001f5b3a9c0d.plist", SearchTerms::HostIdentifier, "identifier likely com.acme.notes"},
        {"Acme Notes", kBoth, "name likely Acme Notes"},
        {"Acme Notes.plist", kBoth, "name likely Acme Notes", "Acme Notes"},
        {"Notes Acme", kBoth, "name weak Acme Notes"},
        {"Acme Notes Pro", kBoth, "name weak Acme Notes"},
        {"Acme NotesPro", kBoth, "none"},
        {"Notes", kBoth, "none"},
        {"com.acme.notes Acme Notes", kBoth, "identifier likely com.acme.notes"},
        {"Acme Notes com.acme.notes", kBoth, "identifier weak com.acme.notes"},
        {"Acme Notes", SearchTerms::Identifier, "none"},
        {"com.acme.notes", SearchTerms::Name, "none"},
        {"com.acme.notes", SearchTerms::None, "none"},
        {"Acme Notes.growlTicket", SearchTerms::TicketName, "ticket likely Acme Notes"},
        {"MyAcme Notes.growlTicket", SearchTerms::TicketName, "ticket weak Acme Notes"},
        {"Notes.growlTicket", SearchTerms::TicketName, "none"},
    };
    for (const auto& [name, terms, expected, realName] : kRows)
        EXPECT_EQ(match(name, terms, realName), expected) << name;
}

TEST(EntryMatchTest, ShortIdentifiersAndNamesMatchNoOthers) {
    const ApplicationTerms suite{"/Applications/Acme Suite.app", "com.acme", "Acme"};
    EXPECT_EQ(match("com.acme.plist", kBoth, {}, suite), "identifier certain com.acme");
    EXPECT_EQ(match("com.acme.notes.plist", kBoth, {}, suite), "none");
    EXPECT_EQ(match("Acme Suite", kBoth, {}, suite), "name likely Acme Suite") << "what the bundle is called";
    for (const char* identifier : {"", " ", "...", ".a.b.c", "a..b.c", "a.b.c."})
        EXPECT_EQ(match("x a..b.c. .a.b.c. ... y", kBoth, {}, {"/Applications/Odd.app", identifier, ""}), "none");
}

} // namespace
} // namespace sweeply
