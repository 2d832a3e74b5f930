#include "appcore/ADTaskRunner.h"

#include "Target.h"
#include "platform/ToolTable.h"

#include <gmock/gmock.h>

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

TEST_F(ADTaskRunnerTest, OutputIsGivenWhateverTheExitStatus) {
    EXPECT_EQ(m_runner.getOutput("/bin/sh", {"-c", "echo said; exit 3"}), "said\n");
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(ADTaskRunnerTest, StandardErrorIsNeverPartOfTheOutput) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(m_runner.getOutput("/bin/sh", {"-c", "echo hidden >&2; echo said"}, true), "said\n");
    EXPECT_EQ(m_runner.getOutput("/bin/sh", {"-c", "echo shown >&2; echo said"}), "said\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "shown\n");
}

TEST_F(ADTaskRunnerTest, AMissingToolGivesNothing) {
    EXPECT_EQ(m_runner.getOutput("/usr/bin/sweeply-no-such-tool", {}), std::nullopt);
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
