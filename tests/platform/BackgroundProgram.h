#pragma once

#include <csignal>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace sweeply {

/// A program of the host that runs while this object lives.
class BackgroundProgram final {
  public:
    /// Starts it and waits for its first line, which says that it is ready.
    explicit BackgroundProgram(std::vector<std::string> words) {
        std::vector<char*> pointers;
        for (auto& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        int ends[2];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        if (::pipe(ends) != 0)
            std::abort();
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        if (posix_spawn(&m_process, pointers[0], &actions, nullptr, pointers.data(), environ) != 0)
            std::abort();
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        for (char c = 0; ::read(ends[0], &c, 1) == 1 && c != '\n';)
            m_firstLine += c;
        ::close(ends[0]);
    }
    BackgroundProgram(const BackgroundProgram&) = delete;
    BackgroundProgram& operator=(const BackgroundProgram&) = delete;
    ~BackgroundProgram() {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }

    [[nodiscard]] const std::string& firstLine() const { return m_firstLine; }

  private:
    pid_t m_process = -1;
    std::string m_firstLine;
};

} // namespace sweeply
