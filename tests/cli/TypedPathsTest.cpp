#include "cli/CliWorld.h"
#include "platform/UniqueFd.h"

#include <fcntl.h>
#include <gmock/gmock.h>

namespace sweeply {
namespace {

using testing::HasSubstr;

class CliTypedPathsTest : public CliTest {
  protected:
    CliTypedPathsTest() {
        write("/Applications/One App.app/Contents/Info.plist",
              "<plist "
              "version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.example.One</string></dict></plist>");
        write("/Users/sam/Documents/thesis", "precious");
        write("/Users/junk/file", "1");
        link("/Users/sam/link", "Documents");
    }
    /// The program started in a folder of the volume.
    ProcessResult runIn(const std::string& folder, std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"--root", m_folder + "/root"});
        const UniqueFd there(::open(host(folder).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        ProcessOptions options;
        options.workingDirectory = there.get();
        options.errors = OutputTo::Capture;
        options.environment = {{"LC_ALL", "C.UTF-8"}};
        return runProcess(SWEEPLY_CLI, arguments, options).value();
    }
};

TEST_F(CliTypedPathsTest, EveryCommandTakesPathsAsTheShellShowsThem) {
    const std::string app = m_folder + "/root/Applications/One App.app";
    EXPECT_THAT(runOnVolume({"uninstall", "--dry-run", app}).output, HasSubstr("] /Applications/One App.app\n"));
    EXPECT_THAT(runIn("/Applications", {"uninstall", "--dry-run", "One App.app"}).output,
                HasSubstr("] /Applications/One App.app\n"));
    EXPECT_EQ(runIn("/", {"scan", "languages", "Applications/One App.app"}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"size", app}).exitStatus, 0);
    EXPECT_EQ(runIn("/Users", {"size", "sam/../junk"}).exitStatus, 0);
    EXPECT_THAT(runOnVolume({"-c", m_folder + "/root/Users/junk", "-s"}).output,
                HasSubstr("User Cache path = /Users/junk\n"));
    EXPECT_EQ(runOnVolume({"ignore", "apps", "add", app}).exitStatus, 0);
    EXPECT_EQ(runOnVolume({"ignore", "apps"}).output, "com.example.One\n");
    EXPECT_EQ(runOnVolume({"ignore", "apps", "remove", app}).exitStatus, 0);

    write(app, "the Mac has such a path as well");
    const auto doubtful = runOnVolume({"size", app});
    EXPECT_EQ(doubtful.exitStatus, 0);
    EXPECT_THAT(doubtful.errors, HasSubstr("taken as a path of the Mac; enter /Applications/One App.app for"));
}

TEST_F(CliTypedPathsTest, ParentsAreResolvedBeforeTheGuardLooks) {
    const auto before = everything();
    for (const char* folder : {"/Users/../Library", "/Users/sam/link/../Library", "/Users/sam/.."}) {
        const auto refused = runOnVolume({"erase", "--yes", folder});
        EXPECT_EQ(refused.exitStatus, 1) << folder;
        EXPECT_THAT(refused.errors, HasSubstr("protected")) << folder;
    }
    const auto outside = runIn("/", {"erase", "--yes", "../victim"});
    EXPECT_EQ(outside.exitStatus, 2);
    EXPECT_THAT(outside.errors, HasSubstr("../victim: lies outside of"));
    EXPECT_EQ(runOnVolume({"erase", "--yes", "/nowhere/../Users/junk"}).exitStatus, 1) << "nowhere is not there";
    EXPECT_EQ(everything(), before);

    EXPECT_EQ(runIn("/Users/sam", {"erase", "--yes", "../junk", "link"}).exitStatus, 0);
    auto after = before;
    for (const char* gone : {"/root/Users/junk", "/root/Users/junk/file", "/root/Users/sam/link"})
        after.erase(gone);
    EXPECT_EQ(everything(), after) << "the link went, what it leads to stays";
}

/// What bash offers for the last of these words.
std::string offered(const std::string& folder, const std::string& script, const std::string& words) {
    const UniqueFd there(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ProcessOptions options;
    options.workingDirectory = there.get();
    const auto result = runProcess(
        "/bin/bash",
        {"-c", script + "\nCOMP_WORDS=(" + words +
                   ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_sweeply_cli\nprintf '%s|' \"${COMPREPLY[@]}\""},
        options);
    return result->output;
}

TEST_F(CliTypedPathsTest, ShellsCompletePathsOfTheMac) {
    makeFolder("/../my macs");
    std::filesystem::rename(m_folder + "/root/Users/junk", m_folder + "/root/Users/junk food");
    link("/../my macs/old", m_folder + "/root");
    const std::string script = run({"completion", "bash"}).output;
    const std::string old = "sweeply-cli --root '" + m_folder + "/my macs/old' ";
    const std::string quotedOld = R"(sweeply-cli --root )" + m_folder + R"(/'my\ macs/old' )";
    const struct {
        std::string words, offered;
    } rows[]{
        {old + "uninstall /App", "/Applications/|"},
        {old + "uninstall \"'/Applications/One A\"", "/Applications/One App.app/|"},
        {quotedOld + "erase '/Users/junk\\ f'", "/Users/junk food/|"},
        {old + "erase '" + m_folder + "/my'", m_folder + "/my macs/|"},
        {old + "erase \\'" + m_folder + "/my\\ macs/old/App", m_folder + "/my macs/old/Applications/|"},
        {"sweeply-cli --root = '" + m_folder + "/root' erase /Users/s", "/Users/sam/|"},
        {"sweeply-cli --root root erase /Users/s", "/Users/sam/|"},
        {"sweeply-cli --root my", "my macs|"},
        {"sweeply-cli size vic", "victim|"},
        {old + "--user s", "sam|"},
        {"sweeply-cli --color al", "always|"},
        {old + "uni", "uninstall|"},
        {old + "clean user-c", "user-caches|"},
        {old + "prefs UseS", "UseSecureErase|"},
        {old + "apps /App", "|"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(offered(m_folder, script, row.words), row.offered) << row.words;
}

} // namespace
} // namespace sweeply
