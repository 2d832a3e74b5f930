#pragma once

#include "cli/CommandLine.h"
#include "platform/Process.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace sweeply {

/// Works on several targets at a time, each in a process of its own: the same command with a list of one. Nothing that
/// one target does can disturb another one, and no more of them is in memory than are under way.
class RootJobs final {
  public:
    /// `line` outlives this.
    explicit RootJobs(const CommandLine& line);

    /// Which root is next, if any; called on the main thread.
    using Next = std::function<std::optional<std::string>()>;
    /// What became of a root; called on the main thread, as they end.
    using Done = std::function<void(const std::string& root, const Result<ProcessResult>& result)>;
    /// Works on as many as the command line allows until there is no next one. An interrupt is handed on to those under
    /// way, which end as they do by themselves. Main thread.
    void run(const Next& next, const Done& done);

  private:
    struct Job {
        std::string root;
        std::optional<Result<ProcessResult>> result = {};
    };

    [[nodiscard]] Result<ProcessResult> runJob(const std::string& root) const;
    void work(Job& job);

    const CommandLine& m_line;
    const std::string m_program;
    std::stop_source m_stop;
    std::mutex m_mutex; ///< guards the results of the jobs
    std::condition_variable m_isDone;
};

} // namespace sweeply
