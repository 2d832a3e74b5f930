#pragma once

#include "platform/TestFolder.h"

#include <array>
#include <csignal>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <vector>

namespace sweeply {

/// A real server of this machine, as server.py beside this file describes it, over a folder of its own.
class LocalServer final {
  public:
    /// With `certificate`, a file with a key and a certificate, it speaks TLS.
    explicit LocalServer(const std::string& certificate = {}) {
        // Whatever stands between this machine and the network is not meant for the machine itself.
        ::setenv("no_proxy", "127.0.0.1,localhost", 1);
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            std::abort();
        UniqueFd readEnd(ends[0]);
        UniqueFd writeEnd(ends[1]);
        std::vector<std::string> words{kPython, SWEEPLY_TEST_SERVER, folder.path()};
        if (!certificate.empty())
            words.push_back(certificate);
        std::vector<char*> pointers;
        for (auto& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, writeEnd.get(), STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, readEnd.get());
        if (posix_spawn(&m_process, kPython, &actions, nullptr, pointers.data(), environ) != 0)
            std::abort();
        posix_spawn_file_actions_destroy(&actions);
        writeEnd.reset();
        for (char c = 0; ::read(readEnd.get(), &c, 1) == 1 && c != '\n';)
            m_port += c;
        m_scheme = certificate.empty() ? "http" : "https";
    }
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;
    ~LocalServer() {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }

    [[nodiscard]] std::string url(const std::string& path) const { return m_scheme + "://127.0.0.1:" + m_port + path; }
    void serve(const std::string& name, const std::string& contents) const {
        std::ofstream(folder.path(name), std::ios::binary) << contents;
    }
    /// What it was asked, a JSON object a line.
    [[nodiscard]] std::string requests() const {
        std::ostringstream text;
        text << std::ifstream(folder.path("requests")).rdbuf();
        return text.str();
    }

    const TestFolder folder;

  private:
    static constexpr const char* kPython = "/usr/bin/python3";

    pid_t m_process = -1;
    std::string m_scheme;
    std::string m_port;
};

} // namespace sweeply
