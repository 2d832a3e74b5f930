#include "cli/CliWorld.h"
#include "cli/Person.h"
#include "formats/Utf8.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Nothing that a terminal obeys, but for the ends of lines and the tabs between columns of our own.
void expectHarmless(const std::string& text) {
    EXPECT_EQ(validUtf8(text), text);
    EXPECT_THAT(text, Not(HasSubstr("\u202e")));
    EXPECT_THAT(text, Not(HasSubstr("\u0085")));
    for (const char c : text)
        EXPECT_FALSE((static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') || c == 0x7F) << text;
}

constexpr const char* kShown = "a\\n\\x1b[31m\\\\\\u202e\\u0085\\xff";

TEST_F(CliTest, NamesAreEscapedWhereverTheyAreShown) {
    const std::string awkward = "a\n\x1B[31m\\\u202e\u0085\xFF";
    const std::string application = "/Applications/" + awkward + ".app";
    write(cache(awkward), "1");
    write("/Users/sam/Library/Logs/" + awkward, std::string(20000, 'x'));
    write(application + "/Contents/Info.plist", "torn");
    write("/Users/sam/Library/LaunchAgents/" + awkward + ".plist", "torn");
    const std::string file = "/" + awkward;
    constexpr auto kOutput = &ProcessResult::output;
    constexpr auto kErrors = &ProcessResult::errors;
    const struct {
        std::vector<std::string> arguments;
        std::string ProcessResult::*shownOn;
    } rows[]{
        {{"scan", "--all"}, kOutput},
        {{"apps"}, kOutput},
        {{"uninstall", "--dry-run", application}, kOutput},
        {{"ignore", "add", cache(awkward)}, nullptr},
        {{"ignore"}, nullptr},
        {{"size", cache(awkward)}, kOutput},
        {{"size", file}, kErrors},
        {{"erase", "--dry-run", file}, kErrors},
        {{"scan", "languages", awkward + "/x"}, nullptr},
        {{"scan", awkward}, kErrors},
        {{"prefs", awkward}, kErrors},
        {{awkward}, kErrors},
        {{"scan", "--" + awkward}, kErrors},
        {{"-u", awkward, "scan"}, nullptr},
        {{"-c", cache(awkward), "-s"}, kOutput},
        {{"-c", file, "-s"}, kErrors},
        {{"--" + awkward, "scan"}, kErrors},
        {{"--verbose", "leftovers"}, kErrors},
        {{"--verbose", "scan", file}, kErrors},
    };
    for (const auto& row : rows) {
        const auto result = runOnVolume(row.arguments);
        SCOPED_TRACE(row.arguments[0] + result.output + result.errors);
        expectHarmless(result.output);
        expectHarmless(result.errors);
        if (row.shownOn) {
            EXPECT_THAT(result.*row.shownOn, HasSubstr(kShown));
        }
    }
    write(application + "/Contents/Info.plist", "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                                                "<string>com.apple.x</string></dict></plist>");
    EXPECT_THAT(runOnVolume({"uninstall", "--yes", application}).errors,
                HasSubstr("\n\"" + std::string(kShown) + "\" seems to be a system application"));
    makeFolder("/../" + awkward);
    const auto lost = run({"--root", m_folder + "/" + awkward, "scan"});
    EXPECT_THAT(lost.errors, HasSubstr(kShown));
    expectHarmless(lost.errors);
}

TEST_F(CliTest, LongRunsAreFoldedOnATerminalAndOnlyThere) {
    for (int item = 0; item < 62; ++item)
        write(cache("item" + std::to_string(item)), std::string(item < 20 ? 5000 : 1, 'x'));
    write(cache("kept"), "1");
    ASSERT_EQ(runOnVolume({"ignore", "add", cache("kept")}).exitStatus, 0);
    const std::string folded = "[x] and 42 more, 168.00 KB; --all-items shows them";
    const std::vector<std::string> arguments{"--root", m_folder + "/root", "scan", "user-caches"};
    EXPECT_THAT(runOnVolume({"scan", "user-caches"}).output, Not(HasSubstr("more")));

    Person person(arguments, {{"TERM", "xterm"}});
    EXPECT_EQ(person.endsWith(), 0);
    EXPECT_THAT(person.seen(), HasSubstr(folded));
    EXPECT_THAT(person.seen(), HasSubstr("[ ] kept"));
    EXPECT_THAT(person.seen(), HasSubstr("[x] item19\r\n"));
    EXPECT_THAT(person.seen(), Not(HasSubstr("[x] item61")));
    EXPECT_THAT(person.seen(), HasSubstr("[-] \x1B[1mCaches\x1B[m")) << "a heading for people, and bold";

    auto whole = arguments;
    whole.emplace_back("--all-items");
    Person patient(whole, {{"TERM", "xterm"}, {"NO_COLOR", "1"}});
    EXPECT_EQ(patient.endsWith(), 0);
    EXPECT_THAT(patient.seen(), HasSubstr("[x] item61"));
    EXPECT_THAT(patient.seen(), HasSubstr("[-] Caches")) << "NO_COLOR is honoured";
}

TEST_F(CliTest, ColumnsLineUpOnATerminalAndAreTabsElsewhere) {
    for (const char* name : {"日本", "e\u0301", "Plain"})
        write("/Applications/" + std::string(name) + ".app/Contents/Info.plist",
              "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.x</string></dict></plist>");
    EXPECT_THAT(runOnVolume({"apps"}).output, HasSubstr("/Applications/日本.app\tcom.x\n"));
    EXPECT_THAT(runOnVolume({"--color=always", "apps"}).output,
                HasSubstr("\x1B[2m/Applications/\x1B[m日本.app\tcom.x\n"));
    Person person({"--root", m_folder + "/root", "--color", "never", "apps"}, {{"TERM", "xterm"}});
    EXPECT_EQ(person.endsWith(), 0);
    for (const char* line : {"/Applications/日本.app   com.x\r\n", "/Applications/e\u0301.app      com.x\r\n",
                             "/Applications/Plain.app  com.x\r\n"})
        EXPECT_THAT(person.seen(), HasSubstr(line));
}

} // namespace
} // namespace sweeply
