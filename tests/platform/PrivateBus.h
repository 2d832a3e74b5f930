#pragma once

#include "platform/BackgroundProgram.h"
#include "platform/Process.h"
#include "platform/TestFolder.h"

namespace sweeply {

/// A session bus of its own, of which this process and its children know while it lives.
class PrivateBus final {
  public:
    PrivateBus() { ::setenv("DBUS_SESSION_BUS_ADDRESS", m_address.c_str(), 1); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() { ::unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    /// What another process sends: "call" or "emit" with gdbus's arguments. Its exit status.
    static int send(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin() + 1, "--session");
        ProcessOptions options;
        options.output = OutputTo::Discard;
        options.errors = OutputTo::Discard;
        return runProcess("/usr/bin/gdbus", arguments, options).value().exitStatus;
    }

  private:
    const TestFolder m_folder;
    const std::string m_address = "unix:path=" + m_folder.path("bus");
    const BackgroundProgram m_daemon{{"/usr/bin/dbus-daemon", "--session", "--nofork", "--nopidfile",
                                      "--print-address=1", "--address=" + m_address}};
};

} // namespace sweeply
