#include "cli/CliWorld.h"
#include "formats/PropertyList.h"

#include <array>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sweeply {
namespace {

class CliClosedPipeTest : public CliTest {
  protected:
    pid_t startWritingTo(int output, std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {SWEEPLY_CLI, "--root", m_folder + "/root"});
        std::vector<char*> words;
        for (auto& argument : arguments)
            words.push_back(argument.data());
        words.push_back(nullptr);
        const int errors = ::open(m_errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const pid_t process = ::fork();
        if (process == 0) {
            ::setenv("LC_ALL", "C.UTF-8", 1);
            ::dup2(output, STDOUT_FILENO);
            ::dup2(errors, STDERR_FILENO);
            ::execv(SWEEPLY_CLI, words.data());
            ::_exit(127);
        }
        ::close(errors);
        return process;
    }
    static int statusOf(pid_t process) {
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    std::string errors() const { return read("/../errors"); }

    const std::string m_errors = m_folder + "/errors";
};

TEST_F(CliClosedPipeTest, EveryCommandEndsQuietlyAndNothingUnseenIsRemoved) {
    write(cache("file"), "1");
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"completion", "bash"}, {"scan"}, {"scan", "--json"}, {"modules"}, {"clean", "--yes"}}) {
        EXPECT_EQ(statusOf(startWritingTo(ends[1], arguments)), 141) << arguments[0];
        EXPECT_EQ(errors(), "") << arguments[0];
    }
    ::close(ends[1]);
    EXPECT_TRUE(exists(cache("file")));
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(statusOf(startWritingTo(full, {"clean", "--yes"})), 1);
    EXPECT_EQ(errors(), "sweeply-cli: standard output: No space left on device\n");
    EXPECT_TRUE(exists(cache("file")));
    ::close(full);
}

TEST_F(CliClosedPipeTest, RemovalUnderWayIsFinishedAndRemembered) {
    for (const char* name : {"a", "b", "c"})
        write(cache(name), "1");
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const pid_t process = startWritingTo(ends[1], {"--pace", "gentle", "clean", "--yes"});
    ::close(ends[1]);
    std::string seen;
    for (char c = 0; seen.find("Sweeply can clean") == std::string::npos && ::read(ends[0], &c, 1) == 1;)
        seen += c;
    ::close(ends[0]);
    EXPECT_EQ(statusOf(process), 141);
    EXPECT_EQ(errors(), "");
    EXPECT_TRUE(std::filesystem::is_empty(host(kCaches)));
    const auto saved = plist::parse(read("/Users/sam/Library/Preferences/com.brindle.Sweeply.plist")).value();
    EXPECT_EQ(saved.find("totalSizeSaved")->asUnsigned(), 12000U);
}

} // namespace
} // namespace sweeply
