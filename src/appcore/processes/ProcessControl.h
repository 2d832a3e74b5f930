#pragma once

#include "appcore/WorkControl.h"

#include <chrono>
#include <string>
#include <vector>

namespace sweeply {

class Alerts;
class FileManager;
class MainThread;
class PrivilegedExecution;
class SystemLog;
class ToolTable;

/// Finds the running processes of applications and has them end. For removal threads; questions are put on the main
/// thread.
class ProcessControl final {
  public:
    struct Services {
        const FileManager& files;
        const ToolTable& tools;
        PrivilegedExecution& privileged;
        Alerts& alerts;
        MainThread& mainThread;
        SystemLog& log;
    };
    /// How long an application may take to quit, and a killed one to be gone.
    struct Patience {
        std::chrono::seconds toQuit{20};
        std::chrono::milliseconds toDie{5000};
    };
    /// An application that may be running, and a process of it that is.
    struct Application {
        std::string name;
        std::string path; ///< of the target
        std::string pid = "0";
    };

    /// All outlive this.
    explicit ProcessControl(Services services) : ProcessControl(services, Patience{}) {}
    ProcessControl(Services services, Patience patience) : m_services(services), m_patience(patience) {}

    /// One line for each process: its number and the path of its executable.
    [[nodiscard]] std::vector<std::string> getPSList() const;
    /// The candidates that run, one record for each process of theirs.
    [[nodiscard]] std::vector<Application> getApplicationsRunning(const std::vector<Application>& candidates) const;
    [[nodiscard]] std::vector<Application> getApplicationsRunning(const std::vector<Application>& candidates,
                                                                  const std::vector<std::string>& lines) const;
    /// 0 when it quit; else what the script answered, or 3 when it could not be run.
    int quitApplication(const std::string& path, std::chrono::seconds timeout) const;
    /// False when it was refused for lack of rights.
    bool killApplicationByPid(const std::string& pid, int signal) const;
    void killApplicationAuthByPid(const std::string& pid, int signal) const;

    /// Has these applications end, and asks the person before it asks them and before it forces them. True when none
    /// runs any longer; false when the person said no, `control` was stopped or some could not be stopped.
    bool tryToStopApplications(const std::vector<Application>& applications, WorkControl& control) const;

  private:
    [[nodiscard]] bool confirms(const char* title, const char* text, const std::vector<Application>& running,
                                const std::string& button) const;
    /// What still runs once some time has passed or nothing does.
    [[nodiscard]] std::vector<Application> stillRunning(const std::vector<Application>& applications,
                                                        WorkControl& control) const;
    void sayFailure(const std::vector<Application>& running, bool wasRefused) const;

    Services m_services;
    Patience m_patience;
};

} // namespace sweeply
