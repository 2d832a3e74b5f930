#pragma once

#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

/// The program at a terminal of its own, with a person who reads and types.
class Person {
  public:
    explicit Person(const std::vector<std::string>& arguments,
                    const std::map<std::string, std::string>& environment = {}) {
        m_process = ::forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_process == 0) {
            ::setenv("LC_ALL", "C.UTF-8", 1);
            for (const auto& [name, value] : environment)
                ::setenv(name.c_str(), value.c_str(), 1);
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

} // namespace sweeply
