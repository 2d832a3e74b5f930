#pragma once

#include "platform/Error.h"

#include <atomic>
#include <string>
#include <vector>

namespace sweeply {

class Authorization;
class SystemLog;
class ToolTable;

/// Administrator rights for single tools: obtained once after the user authenticates, held until given back. No
/// credential ever passes through here. authorize and deauthorize belong to the main thread; the rest to any.
class PrivilegedExecution final {
  public:
    PrivilegedExecution(Authorization& service, const ToolTable& tools, SystemLog& log)
        : m_service(service), m_tools(tools), m_log(log) {}

    /// Asks for the rights; isAuthorised() tells the outcome.
    void authorize();
    /// Gives them back. False when there were none.
    bool deauthorize();
    [[nodiscard]] bool isAuthorised() const { return m_authorized; }

    /// Runs a Mac's tool, named by its path there, and waits for it. Its exit status; an error when it could not be
    /// started, which is logged. The working directory is a descriptor, or -1.
    Result<int> statusOfCommandWithPrivilidges(const std::string& tool, const std::vector<std::string>& arguments,
                                               int workingDirectory);
    /// The same. True once it has ended, whatever its exit status;
    /// false when it could not be started.
    bool executeCommandWithPrivilidges(const std::string& tool, const std::vector<std::string>& arguments,
                                       int workingDirectory);

  private:
    void copyRights();

    Authorization& m_service;
    const ToolTable& m_tools;
    SystemLog& m_log;
    bool m_hasReference = false;
    std::atomic<bool> m_authorized{false};
};

} // namespace sweeply
