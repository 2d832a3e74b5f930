#pragma once

#include "engine/record/RunRecord.h"
#include "platform/Error.h"

#include <functional>
#include <string>
#include <vector>

namespace sweeply {

class FileManager;
struct FolderConstants;

/// The records of one user's runs, and where what they kept lies. What is damaged or of a newer program is passed over
/// with a line, and never deleted.
class RunArchive final {
  public:
    /// All outlive this; `reportProblem` is told of records that cannot be read.
    RunArchive(FileManager& files, const FolderConstants& folders, std::function<void(const Error&)> reportProblem);

    [[nodiscard]] const std::string& runsFolder() const { return m_runsFolder; }
    /// The folder of everything that any run kept.
    [[nodiscard]] const std::string& keptFolder() const { return m_keptFolder; }
    [[nodiscard]] std::string recordFile(const std::string& run) const;
    /// The folder of one kept item.
    [[nodiscard]] std::string folderOf(const std::string& run, std::uint32_t number) const;
    /// Is that folder still there?
    [[nodiscard]] bool holdsAnythingOf(const std::string& run, std::uint32_t number) const;

    /// The newest first; on to the next one as long as `visit` says so. Any thread.
    void forEachRecord(const std::function<bool(RunRecord)>& visit) const;
    [[nodiscard]] std::vector<RunRecord> records() const;
    /// NotFound for one that is not there; other errors name the file.
    [[nodiscard]] Result<RunRecord> record(const std::string& run) const;
    /// Adds a line to a record that is not being written, and has it on the disk.
    Result<void> append(const std::string& run, const std::string& line);
    /// Deletes all but the newest hundred records; one of a run that has something kept stays.
    void prune();

  private:
    /// The names of all runs that there are files of, the newest first.
    [[nodiscard]] std::vector<std::string> runs() const;

    FileManager& m_files;
    const std::function<void(const Error&)> m_reportProblem;
    const std::string m_runsFolder;
    const std::string m_keptFolder;
};

/// Is it what runs are called? What else lies among the records is none, and no other text becomes a part of a path.
[[nodiscard]] bool isRunName(std::string_view text);

} // namespace sweeply
