#pragma once

#include "platform/Process.h"
#include "platform/TestFolder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

namespace sweeply {

/// A session bus of its own, of which this process and its children know while it lives.
class PrivateBus final {
  public:
    PrivateBus() {
        const std::string address = "unix:path=" + m_folder.path("bus");
        std::string arguments[] = {kDaemon,       "--session",         "--nofork",
                                   "--nopidfile", "--print-address=1", "--address=" + address};
        std::vector<char*> pointers;
        for (auto& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        int ends[2];
        if (::pipe(ends) != 0)
            std::abort();
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        if (posix_spawn(&m_process, kDaemon, &actions, nullptr, pointers.data(), environ) != 0)
            std::abort();
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        // It says its address once it listens.
        char byte = 0;
        if (::read(ends[0], &byte, 1) != 1)
            std::abort();
        ::close(ends[0]);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    /// What another process sends: "call" or "emit" with gdbus's arguments. Its exit status.
    static int send(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin() + 1, "--session");
        ProcessOptions options;
        options.output = OutputTo::Discard;
        options.errors = OutputTo::Discard;
        return runProcess("/usr/bin/gdbus", arguments, options).value().exitStatus;
    }

  private:
    static constexpr const char* kDaemon = "/usr/bin/dbus-daemon";

    TestFolder m_folder;
    pid_t m_process = -1;
};

} // namespace sweeply
