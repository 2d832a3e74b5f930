#pragma once

#include "app/Watchers.h"

#include <string>
#include <thread>
#include <vector>

namespace sweeply {

class Application;
class SystemLog;

/// The program as the system sees it: its start, and what it knows of where it runs from. Main thread.
class ADApp final {
  public:
    /// What is started: a program with a window, or one in a terminal that runs one command and speaks to no server by
    /// itself.
    enum class Face { Window, Terminal };

    /// All outlive this. `arguments` are the process's, its name first.
    ADApp(Application& application, Watchers& watchers, SystemLog& log, std::vector<std::string> arguments);
    /// Waits for watchers being installed.
    ~ADApp();
    ADApp(const ADApp&) = delete;
    ADApp& operator=(const ADApp&) = delete;

    /// Everything between the construction of the parts and the first thing that the user does, in order. Once.
    void start(Face face);

    [[nodiscard]] Application& application() { return m_application; }
    [[nodiscard]] bool runningFromDMG() const { return m_runningFromDMG; }
    void setRunningFromDMG(bool running) { m_runningFromDMG = running; }

  private:
    void initUserDefaults();
    void installWatchers();

    Application& m_application;
    Watchers& m_watchers;
    SystemLog& m_log;
    const std::vector<std::string> m_arguments;
    bool m_runningFromDMG;
    std::vector<std::jthread> m_installations;
};

} // namespace sweeply
