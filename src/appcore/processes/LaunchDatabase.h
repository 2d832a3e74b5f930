#pragma once

#include <functional>
#include <memory>
#include <thread>

namespace sweeply {

class ADTaskRunner;
class FileManager;
class MainThread;
class SystemLog;
class SystemVersion;
struct FolderConstants;

/// The system's registry of applications, and building it anew.
class LaunchDatabase final {
  public:
    struct Services {
        const FileManager& files;
        const FolderConstants& folders;
        const SystemVersion& version;
        const ADTaskRunner& tasks;
        MainThread& mainThread;
        SystemLog& log;
    };

    /// All outlive this.
    explicit LaunchDatabase(Services services) : m_services(services) {}

    /// Starts building it on a thread of its own; `finished` hears of the end on the main thread, unless this is gone
    /// by then. Main thread. One that is under way is waited for first.
    void rebuildLaunchDB(std::function<void()> finished);

  private:
    const Services m_services;
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);
    std::jthread m_thread;
};

} // namespace sweeply
