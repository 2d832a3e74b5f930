#pragma once

#include "appcore/sizes/FolderContents.h"
#include "platform/ReadProblems.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace sweeply {

/// Measures what is in one folder of the target after another, on a thread of its own. Main thread; whoever shows it
/// looks from time to time what has come.
class SpaceWalk final {
  public:
    /// `files` outlives this.
    SpaceWalk(const FileManager& files, SizeUnits units) : m_files(files), m_units(units) {}
    ~SpaceWalk() { stop(); }

    /// Forgets the last folder and begins with this one.
    void start(const std::string& path);
    /// Waits for the end, which comes at once; what was measured stays.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// What has been measured since the last call.
    [[nodiscard]] std::vector<FolderPart> take();
    /// What could not be read, the folder itself included.
    [[nodiscard]] std::vector<Error> problems() const { return m_problems->all(); }

  private:
    const FileManager& m_files;
    const SizeUnits m_units;
    std::atomic<bool> m_isRunning = false;
    std::mutex m_mutex;
    std::vector<FolderPart> m_parts; ///< guarded by m_mutex
    std::unique_ptr<ReadProblems> m_problems = std::make_unique<ReadProblems>();
    std::jthread m_thread; ///< last: it uses the rest
};

} // namespace sweeply
