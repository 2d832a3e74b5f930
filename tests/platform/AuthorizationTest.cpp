#include "platform/Authorization.h"

#include "platform/UniqueFd.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace sweeply {
namespace {

namespace fs = std::filesystem;

/// A stand-in for sudo that writes down how it was called and does what files beside it say: "refuse" lets it deny
/// everything, "wander" lets it start programs in "/", as a runcwd setting would.
constexpr const char* kFakeSudo = R"(#!/bin/sh
here=${0%/*}
{ printf '[%s]' "$@"; printf '\n'; } >> "$here/calls"
[ -e "$here/refuse" ] && { echo "sudo: 3 incorrect password attempts" >&2; exit 1; }
[ -e "$here/wander" ] && cd /
while [ $# -gt 0 ] && [ "$1" != -- ]; do shift; done
[ $# -gt 0 ] || exit 0
shift
exec "$@"
)";

class AuthorizationTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = fs::temp_directory_path() / "rights.XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
        std::ofstream(m_folder + "/sudo") << kFakeSudo;
        fs::permissions(m_folder + "/sudo", fs::perms::owner_all);
        m_setting.folders = {m_folder + "/missing", m_folder};
    }
    void TearDown() override { fs::remove_all(m_folder); }

    void tell(const std::string& what) const { std::ofstream(m_folder + "/" + what) << "yes"; }
    std::string calls() const {
        std::ostringstream text;
        text << std::ifstream(m_folder + "/calls").rdbuf();
        return text.str();
    }
    UniqueFd folder(const std::string& path) const {
        return UniqueFd(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }

    std::string m_folder;
    SudoSetting m_setting;
};

TEST_F(AuthorizationTest, RightsAreAskedForWhereAPersonCanAnswer) {
    const std::string probe = "[-n][--][/bin/ls][-id][.]\n";
    const std::vector<std::pair<SudoSetting, std::string>> table{
        {{false, true, true, {m_folder}}, "[-A][-v]\n"},
        {{false, false, true, {m_folder}}, "[-v]\n"},
        {{false, false, false, {m_folder}}, "[-n][-v]\n"},
    };
    for (const auto& [setting, asked] : table) {
        fs::remove(m_folder + "/calls");
        SudoAuthorization rights(setting);
        ASSERT_TRUE(rights.create());
        ASSERT_TRUE(rights.copyRights());
        EXPECT_EQ(calls(), asked + probe);
    }
}

TEST_F(AuthorizationTest, ARefusalSaysWhyWithSudosStatus) {
    tell("refuse");
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());

    const auto result = rights.copyRights();

    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().status, 1);
    EXPECT_EQ(result.error().reason, "3 incorrect password attempts");
}

TEST_F(AuthorizationTest, WithoutSudoThereIsNoService) {
    m_setting.folders = {m_folder + "/missing"};
    SudoAuthorization rights(m_setting);

    const auto result = rights.create();

    ASSERT_FALSE(result);
    EXPECT_NE(result.error().status, 0);
    rights.giveBack();
}

TEST_F(AuthorizationTest, AToolRunsWithItsArgumentsInItsFolder) {
    fs::create_directory(m_folder + "/parent");
    std::ofstream(m_folder + "/parent/-a \"b\"\n") << "x";
    std::ofstream(m_folder + "/parent/other") << "x";
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());
    ASSERT_TRUE(rights.copyRights());
    const UniqueFd parent = folder(m_folder + "/parent");
    fs::rename(m_folder + "/parent", m_folder + "/moved");

    const auto status = rights.run("/bin/rm", {"-rf", "./-a \"b\"\n"}, parent.get());

    EXPECT_EQ(status, 0);
    EXPECT_FALSE(fs::exists(m_folder + "/moved/-a \"b\"\n"));
    EXPECT_TRUE(fs::exists(m_folder + "/moved/other"));
    EXPECT_NE(calls().find("[-n][--][/bin/rm][-rf][./-a \"b\"\n]"), std::string::npos) << calls();

    rights.giveBack();
    EXPECT_TRUE(calls().ends_with("[-k]\n"));
}

TEST_F(AuthorizationTest, ASudoThatWandersOffGetsNoRelativeNames) {
    tell("wander");
    std::ofstream(m_folder + "/precious") << "x";
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());
    ASSERT_TRUE(rights.copyRights());
    const UniqueFd here = folder(m_folder);

    const auto status = rights.run("/bin/rm", {"-rf", "./precious"}, here.get());

    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().kind, ErrorKind::Unavailable);
    EXPECT_EQ(calls().find("/bin/rm"), std::string::npos);
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "exit 3"}, -1), 3) << "absolute work goes on";
}

TEST_F(AuthorizationTest, LapsedRightsAreNotTakenForTheToolsFailure) {
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());
    ASSERT_TRUE(rights.copyRights());
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "exit 1"}, -1), 1);

    tell("refuse");
    const auto status = rights.run("/bin/sh", {"-c", "exit 0"}, -1);

    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().kind, ErrorKind::PermissionDenied);
}

TEST_F(AuthorizationTest, RootNeedsNoSudo) {
    m_setting.isRoot = true;
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());
    ASSERT_TRUE(rights.copyRights());
    const UniqueFd here = folder(m_folder);

    EXPECT_EQ(rights.run("/bin/sh", {"-c", "echo x > ./made; exit 4"}, here.get()), 4);
    rights.giveBack();

    EXPECT_TRUE(fs::exists(m_folder + "/made"));
    EXPECT_FALSE(fs::exists(m_folder + "/calls"));
}

} // namespace
} // namespace sweeply
