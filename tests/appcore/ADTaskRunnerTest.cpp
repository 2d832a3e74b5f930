#include "appcore/ADTaskRunner.h"

#include "appcore/TestTarget.h"
#include "platform/Process.h"
#include "platform/ToolTable.h"
#include "platform/UniqueFd.h"

#include <array>
#include <gmock/gmock.h>
#include <unistd.h>

namespace sweeply {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ADTaskRunnerTest : public testing::Test {
  protected:
    ToolTable m_tools{"/nowhere", ToolTable::Host::Other};
    RecordingLog m_log;
    ADTaskRunner m_runner{m_tools, m_log};
};

TEST_F(ADTaskRunnerTest, OutputIsGivenWhateverTheExitStatusAndStandardErrorIsNoPartOfIt) {
    const auto said = m_runner.run("/bin/sh", {"-c", "echo said; echo complained >&2; exit 3"});
    EXPECT_EQ(said->output + said->errors, "said\ncomplained\n");
    EXPECT_EQ(said->exitStatus, 3);
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const UniqueFd readEnd(ends[0]);
    UniqueFd writeEnd(ends[1]);
    const UniqueFd before(::dup(STDERR_FILENO));
    ::dup2(writeEnd.get(), STDERR_FILENO);
    const auto suppressed = m_runner.getOutput("/bin/sh", {"-c", "echo hidden >&2; echo said; exit 3"}, true);
    const auto inherited = m_runner.getOutput("/bin/sh", {"-c", "echo shown >&2; echo said"});
    ::dup2(before.get(), STDERR_FILENO);
    writeEnd.reset();
    std::array<char, 100> shown{};
    EXPECT_EQ(::read(readEnd.get(), shown.data(), shown.size() - 1), 6);
    EXPECT_STREQ(shown.data(), "shown\n");
    EXPECT_EQ(suppressed, "said\n");
    EXPECT_EQ(inherited, "said\n");
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(ADTaskRunnerTest, AMissingToolGivesNothing) {
    EXPECT_EQ(m_runner.getOutput("/usr/bin/sweeply-no-such-tool", {}), std::nullopt);
    EXPECT_EQ(m_runner.run("/usr/bin/sweeply-no-such-tool", {}).error().kind, ErrorKind::Unavailable);
    EXPECT_THAT(m_log.lines(), IsEmpty());
    EXPECT_EQ(m_runner.launchTaskAndGetTermStatusWithCmd("/usr/bin/sweeply-no-such-tool", {"-a", "b"}), std::nullopt);
    EXPECT_THAT(
        m_log.lines(),
        ElementsAre("Error while invoking command /usr/bin/sweeply-no-such-tool with args (-a, b) : there is no "
                    "such tool on this machine"));
}

TEST_F(ADTaskRunnerTest, TheExitStatusIsTheTools) {
    EXPECT_EQ(m_runner.launchTaskAndGetTermStatusWithCmd("/bin/sh", {"-c", "exit 3"}), 3);
    EXPECT_EQ(m_runner.launchTaskAndGetTermStatusWithCmd("/bin/sh", {"-c", "kill -KILL $$"}), 137);
}

} // namespace
} // namespace sweeply
