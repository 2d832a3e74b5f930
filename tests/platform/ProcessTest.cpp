#include "platform/Process.h"

#include "platform/UniqueFd.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace sweeply {
namespace {

namespace fs = std::filesystem;

const std::string kShell = "/bin/sh";

class ProcessTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = fs::temp_directory_path() / "process.XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { fs::remove_all(m_folder); }

    std::string m_folder;
};

TEST_F(ProcessTest, ArgumentsArriveAsTheyAre) {
    const std::vector<std::string> awkward{"a \"b\" 'c'", "line\nbreak",  "-rf", "$HOME `id` *", "", "\xff\xfe",
                                           "back\\slash", "; echo owned", "--"};
    std::vector<std::string> arguments{"-c", "printf '%s|' \"$@\"", "sh"};
    arguments.insert(arguments.end(), awkward.begin(), awkward.end());
    std::string expected;
    for (const std::string& argument : awkward)
        expected += argument + "|";

    const auto result = runProcess(kShell, arguments);

    ASSERT_TRUE(result) << result.error().message();
    EXPECT_EQ(result->output, expected);
    EXPECT_TRUE(result->succeeded());
}

TEST_F(ProcessTest, AnArgumentWithAZeroByteIsRefusedInsteadOfCutShort) {
    EXPECT_FALSE(runProcess(kShell, {"-c", "true", std::string("cut\0short", 9)}));
}

TEST_F(ProcessTest, ExitStatusAndSignalAreToldApart) {
    const auto exited = runProcess(kShell, {"-c", "exit 127"});
    ASSERT_TRUE(exited);
    EXPECT_EQ(exited->exitStatus, 127);
    EXPECT_EQ(exited->signal, 0);

    const auto killed = runProcess(kShell, {"-c", "kill -TERM $$"});
    ASSERT_TRUE(killed);
    EXPECT_EQ(killed->signal, SIGTERM);
    EXPECT_FALSE(killed->succeeded());
}

TEST_F(ProcessTest, AProgramThatCannotStartIsAnError) {
    const std::string plainFile = m_folder + "/plain";
    std::ofstream(plainFile) << "no program";

    const auto missing = runProcess(m_folder + "/nothing", {});
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(missing.error().path, m_folder + "/nothing");

    const auto refused = runProcess(plainFile, {});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().kind, ErrorKind::PermissionDenied);
}

TEST_F(ProcessTest, MuchOutputOnBothStreamsDoesNotBlock) {
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto result = runProcess(
        kShell, {"-c", "head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero; head -c 10 /dev/zero >&2"}, options);

    ASSERT_TRUE(result) << result.error().message();
    EXPECT_EQ(result->output.size(), 3000000U);
    EXPECT_EQ(result->errors.size(), 3000010U);
}

TEST_F(ProcessTest, EndlessOutputIsCutOffWithAnError) {
    ProcessOptions options;
    options.captureLimit = 100000;
    const auto result = runProcess(kShell, {"-c", "exec cat /dev/zero"}, options);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, ErrorKind::TooLarge);
}

TEST_F(ProcessTest, StandardInputIsAtItsEndUnlessInherited) {
    const auto result = runProcess("/bin/cat", {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "");
}

TEST_F(ProcessTest, TheWorkingDirectoryIsTheDescriptorsWhateverItsPathIsNow) {
    fs::create_directory(m_folder + "/before");
    const UniqueFd directory(::open((m_folder + "/before").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    fs::rename(m_folder + "/before", m_folder + "/after");
    fs::create_directory(m_folder + "/before");

    ProcessOptions options;
    options.workingDirectory = directory.get();
    ASSERT_TRUE(runProcess(kShell, {"-c", "echo x > ./made"}, options));

    EXPECT_TRUE(fs::exists(m_folder + "/after/made"));
    EXPECT_FALSE(fs::exists(m_folder + "/before/made"));
}

TEST_F(ProcessTest, OnlyTheNamedDescriptorsReachTheChild) {
    std::ofstream(m_folder + "/file") << "contents";
    const UniqueFd wanted(::open((m_folder + "/file").c_str(), O_RDONLY | O_CLOEXEC));
    const UniqueFd other(::open((m_folder + "/file").c_str(), O_RDONLY | O_CLOEXEC));

    ProcessOptions options;
    options.inheritedDescriptors = {wanted.get()};
    const auto result = runProcess(kShell,
                                   {"-c", "cat <&$1; [ -e /proc/self/fd/$2 ] && echo leaked", "sh",
                                    std::to_string(wanted.get()), std::to_string(other.get())},
                                   options);

    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "contents");
    EXPECT_NE(::fcntl(wanted.get(), F_GETFD) & FD_CLOEXEC, 0) << "ours keeps its flag";
}

TEST_F(ProcessTest, EnvironmentAdditionsReplaceWhatWasThere) {
    ProcessOptions options;
    options.environment = {{"HOME", "/elsewhere"}, {"SWEEPLY_NEW", "a=b c"}};
    const auto result = runProcess(kShell, {"-c", "echo \"$HOME,$SWEEPLY_NEW\"; env | grep -c ^HOME="}, options);

    ASSERT_TRUE(result);
    EXPECT_EQ(result->output, "/elsewhere,a=b c\n1\n");
}

TEST_F(ProcessTest, BlockedSignalsAreNotHandedDown) {
    sigset_t terminate;
    sigset_t before;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &terminate, &before), 0);

    const auto result = runProcess(kShell, {"-c", "kill -TERM $$; echo survived"});

    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->signal, SIGTERM);
}

TEST_F(ProcessTest, ManyThreadsGetEachTheirOwnOutput) {
    std::vector<std::string> outputs(8);
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            threads.emplace_back([&outputs, i] {
                for (int round = 0; round < 10; ++round) {
                    const auto result = runProcess(kShell, {"-c", "printf %s \"$1\"", "sh", std::to_string(i)});
                    outputs[i] += result ? result->output : result.error().message();
                }
            });
        }
    }
    for (std::size_t i = 0; i < outputs.size(); ++i)
        EXPECT_EQ(outputs[i], std::string(10, static_cast<char>('0' + i)));
}

} // namespace
} // namespace sweeply
