#include "platform/Process.h"

#include "platform/TestFolder.h"

#include <csignal>
#include <gtest/gtest.h>
#include <thread>

namespace sweeply {
namespace {

/// What a shell makes of the script, with `arguments` as its own.
Result<ProcessResult> shell(const std::string& script, const ProcessOptions& options = {},
                            std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {"-c", script, "sh"});
    return runProcess("/bin/sh", arguments, options);
}

TEST(ProcessTest, ArgumentsArriveAsTheyAre) {
    const std::vector<std::string> awkward{"a \"b\" 'c'", "line\nbreak",  "-rf", "$HOME `id` *", "", "\xff\xfe",
                                           "back\\slash", "; echo owned", "--"};
    std::string expected;
    for (const std::string& argument : awkward)
        expected += argument + "|";
    const auto result = shell("printf '%s|' \"$@\"", {}, awkward);
    ASSERT_TRUE(result) << result.error().message();
    EXPECT_EQ(result->output, expected);
    EXPECT_TRUE(result->succeeded());
    EXPECT_FALSE(shell("true", {}, {std::string("cut\0short", 9)})) << "a zero byte would cut it short";
}

TEST(ProcessTest, ExitStatusAndSignalAreToldApart) {
    const auto exited = shell("exit 127").value();
    EXPECT_EQ(exited.exitStatus, 127);
    EXPECT_EQ(exited.signal, 0);
    const auto killed = shell("kill -TERM $$").value();
    EXPECT_EQ(killed.signal, SIGTERM);
    EXPECT_FALSE(killed.succeeded());
}

TEST(ProcessTest, AProgramThatCannotStartIsAnError) {
    const TestFolder folder;
    folder.makeFile("plain");
    const auto missing = runProcess(folder.path("nothing"), {});
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(missing.error().path, folder.path("nothing"));
    EXPECT_EQ(runProcess(folder.path("plain"), {}).error().kind, ErrorKind::PermissionDenied);
}

TEST(ProcessTest, MuchOutputOnBothStreamsDoesNotBlockAndEndlessOutputIsCutOff) {
    ProcessOptions options;
    options.errors = OutputTo::Capture;
    const auto result =
        shell("head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero; head -c 10 /dev/zero >&2", options);
    ASSERT_TRUE(result) << result.error().message();
    EXPECT_EQ(result->output.size(), 3000000U);
    EXPECT_EQ(result->errors.size(), 3000010U);
    options.captureLimit = 100000;
    EXPECT_EQ(shell("exec cat /dev/zero", options).error().kind, ErrorKind::TooLarge);
}

TEST(ProcessTest, StandardInputIsAtItsEndUnlessInherited) { EXPECT_EQ(runProcess("/bin/cat", {})->output, ""); }

TEST(ProcessTest, TheWorkingDirectoryIsTheDescriptorsWhateverItsPathIsNow) {
    const TestFolder folder;
    folder.makeFolder("before");
    const UniqueFd directory(::open(folder.path("before").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::filesystem::rename(folder.path("before"), folder.path("after"));
    folder.makeFolder("before");
    ProcessOptions options;
    options.workingDirectory = directory.get();
    ASSERT_TRUE(shell("echo x > ./made", options));
    EXPECT_TRUE(folder.contains("after/made"));
    EXPECT_FALSE(folder.contains("before/made"));
}

TEST(ProcessTest, OnlyTheNamedDescriptorsReachTheChild) {
    const TestFolder folder;
    folder.write("file", "contents");
    const UniqueFd wanted(::open(folder.path("file").c_str(), O_RDONLY | O_CLOEXEC));
    const UniqueFd other(::open(folder.path("file").c_str(), O_RDONLY | O_CLOEXEC));
    ProcessOptions options;
    options.inheritedDescriptors = {wanted.get()};
    const auto result = shell("cat <&$1; [ -e /proc/self/fd/$2 ] && echo leaked", options,
                              {std::to_string(wanted.get()), std::to_string(other.get())});
    EXPECT_EQ(result.value().output, "contents");
    EXPECT_NE(::fcntl(wanted.get(), F_GETFD) & FD_CLOEXEC, 0) << "ours keeps its flag";
}

TEST(ProcessTest, EnvironmentAdditionsReplaceWhatWasThere) {
    ProcessOptions options;
    options.environment = {{"HOME", "/elsewhere"}, {"SWEEPLY_NEW", "a=b c"}};
    EXPECT_EQ(shell("echo \"$HOME,$SWEEPLY_NEW\"; env | grep -c ^HOME=", options)->output, "/elsewhere,a=b c\n1\n");
}

TEST(ProcessTest, BlockedSignalsAreNotHandedDown) {
    sigset_t terminate;
    sigset_t before;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &terminate, &before), 0);
    const auto result = shell("kill -TERM $$; echo survived");
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(result.value().signal, SIGTERM);
}

TEST(ProcessTest, ManyThreadsGetEachTheirOwnOutput) {
    std::vector<std::string> outputs(8);
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < outputs.size(); ++i) {
            threads.emplace_back([&outputs, i] {
                for (int round = 0; round < 10; ++round) {
                    const auto result = shell("printf %s \"$1\"", {}, {std::to_string(i)});
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
