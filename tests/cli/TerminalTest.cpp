#include "cli/CliWorld.h"

#include <csignal>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sweeply {

namespace {

/// The program at a terminal of its own, with a person who reads and types.
class Person {
  public:
    explicit Person(const std::vector<std::string>& arguments) {
        m_process = ::forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_process == 0) {
            ::setenv("LC_ALL", "C.UTF-8", 1);
            std::vector<char*> words{const_cast<char*>(SWEEPLY_CLI)};
            for (const auto& argument : arguments)
                words.push_back(const_cast<char*>(argument.c_str()));
            words.push_back(nullptr);
            ::execv(SWEEPLY_CLI, words.data());
            ::_exit(127);
        }
    }
    ~Person() { ::close(m_terminal); }

    /// Reads until `text` has been shown or the program ends.
    bool sees(const std::string& text) {
        while (m_seen.find(text) == std::string::npos) {
            char buffer[4096];
            const ssize_t length = ::read(m_terminal, buffer, sizeof buffer);
            if (length <= 0)
                return false;
            m_seen.append(buffer, static_cast<std::size_t>(length));
        }
        return true;
    }
    void types(const std::string& text) const {
        EXPECT_EQ(::write(m_terminal, text.data(), text.size()), ssize_t(text.size()));
    }
    void interrupts() const { ::kill(m_process, SIGINT); }
    int endsWith() {
        sees("\x01 never shown");
        int status = 0;
        ::waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    const std::string& seen() const { return m_seen; }

  private:
    int m_terminal = -1;
    pid_t m_process = -1;
    std::string m_seen;
};

} // namespace

TEST_F(CliTest, PersonIsAskedAndObeyed) {
    write(cache("item\x1B[31m"), "1");
    const auto before = everything();
    Person doubtful({"--root", m_folder + "/root", "clean"});
    ASSERT_TRUE(doubtful.sees("[y/N]"));
    doubtful.types("n\n");
    EXPECT_EQ(doubtful.endsWith(), 1);
    EXPECT_EQ(doubtful.seen().find("item\x1B[31m"), std::string::npos) << "a name must not command the terminal";
    EXPECT_EQ(everything(), before);

    Person sure({"--root", m_folder + "/root", "clean"});
    ASSERT_TRUE(sure.sees("[y/N]"));
    sure.types("y\n");
    EXPECT_EQ(sure.endsWith(), 0);
    EXPECT_NE(sure.seen().find("Sweeply has cleaned 4.00 KB from your Mac!"), std::string::npos) << sure.seen();
    EXPECT_FALSE(exists(cache("item\x1B[31m")));
}

TEST_F(CliTest, InterruptedScanShowsWhatWasFound) {
    for (int i = 0; i < 2000; ++i) // at 0.2 seconds each the scan would take minutes
        write(cache("item" + std::to_string(i)), "1");
    Person hurried({"--root", m_folder + "/root", "--pace", "gentle", "clean", "--yes"});
    ASSERT_TRUE(hurried.sees("Scanning"));
    ASSERT_TRUE(hurried.sees("KB (")) << "something is found";
    hurried.interrupts();
    EXPECT_EQ(hurried.endsWith(), 130);
    EXPECT_NE(hurried.seen().find("[x] item"), std::string::npos);
    EXPECT_TRUE(exists(cache("item0")));
    EXPECT_TRUE(exists(cache("item1999")));
}

} // namespace sweeply
