#include "platform/Authorization.h"

#include "platform/TestFolder.h"

#include <gmock/gmock.h>

namespace sweeply {
namespace {

using namespace testing;

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
    AuthorizationTest() {
        m_folder.write("sudo", kFakeSudo);
        m_folder.setMode("sudo", 0700);
        m_setting.folders = {m_folder.path("missing"), m_folder.path()};
    }
    /// Rights that were asked for and given.
    SudoAuthorization given() const {
        SudoAuthorization rights(m_setting);
        EXPECT_TRUE(rights.create() && rights.copyRights());
        return rights;
    }
    std::string calls() const { return m_folder.read("calls"); }

    const TestFolder m_folder;
    SudoSetting m_setting;
};

TEST_F(AuthorizationTest, RightsAreAskedForWhereAPersonCanAnswer) {
    const std::string probe = "[-n][--][/bin/ls][-id][.]\n";
    for (const auto& [setting, asked] : {std::pair(SudoSetting{false, true, true, {m_folder.path()}}, "[-A][-v]\n"),
                                         {SudoSetting{false, false, true, {m_folder.path()}}, "[-v]\n"},
                                         {SudoSetting{false, false, false, {m_folder.path()}}, "[-n][-v]\n"}}) {
        m_folder.remove("calls");
        m_setting = setting;
        (void)given();
        EXPECT_EQ(calls(), asked + probe);
    }
}

TEST_F(AuthorizationTest, ARefusalSaysWhyWithSudosStatus) {
    m_folder.makeFile("refuse");
    SudoAuthorization rights(m_setting);
    ASSERT_TRUE(rights.create());
    const auto result = rights.copyRights();
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().status, 1);
    EXPECT_EQ(result.error().reason, "3 incorrect password attempts");
}

TEST_F(AuthorizationTest, WithoutSudoThereIsNoService) {
    m_setting.folders = {m_folder.path("missing")};
    SudoAuthorization rights(m_setting);
    EXPECT_NE(rights.create().error().status, 0);
    rights.giveBack();
}

TEST_F(AuthorizationTest, AToolRunsWithItsArgumentsInItsFolder) {
    m_folder.makeFile("parent/-a \"b\"\n");
    m_folder.makeFile("parent/other");
    auto rights = given();
    const UniqueFd parent(::open(m_folder.path("parent").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::filesystem::rename(m_folder.path("parent"), m_folder.path("moved"));
    EXPECT_EQ(rights.run("/bin/rm", {"-rf", "./-a \"b\"\n"}, parent.get()), 0);
    EXPECT_FALSE(m_folder.contains("moved/-a \"b\"\n"));
    EXPECT_TRUE(m_folder.contains("moved/other"));
    EXPECT_THAT(calls(), HasSubstr("[-n][--][/bin/rm][-rf][./-a \"b\"\n]"));
    rights.giveBack();
    EXPECT_THAT(calls(), EndsWith("[-k]\n"));
}

TEST_F(AuthorizationTest, ASudoThatWandersOffGetsNoRelativeNames) {
    m_folder.makeFile("wander");
    m_folder.makeFile("precious");
    auto rights = given();
    const auto status = rights.run("/bin/rm", {"-rf", "./precious"}, m_folder.fd());
    EXPECT_EQ(status.error().kind, ErrorKind::Unavailable);
    EXPECT_THAT(calls(), Not(HasSubstr("/bin/rm")));
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "exit 3"}, -1), 3) << "absolute work goes on";
}

TEST_F(AuthorizationTest, LapsedRightsAreNotTakenForTheToolsFailure) {
    auto rights = given();
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "exit 1"}, -1), 1);
    m_folder.makeFile("refuse");
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "exit 0"}, -1).error().kind, ErrorKind::PermissionDenied);
}

TEST_F(AuthorizationTest, RootNeedsNoSudo) {
    m_setting.isRoot = true;
    auto rights = given();
    EXPECT_EQ(rights.run("/bin/sh", {"-c", "echo x > ./made; exit 4"}, m_folder.fd()), 4);
    rights.giveBack();
    EXPECT_TRUE(m_folder.contains("made"));
    EXPECT_FALSE(m_folder.contains("calls"));
}

} // namespace
} // namespace sweeply
