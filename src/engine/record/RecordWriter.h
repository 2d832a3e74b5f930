#pragma once

#include "appcore/changes/KeptItem.h"
#include "engine/record/RunArchive.h"
#include "platform/UniqueFd.h"

#include <chrono>
#include <optional>
#include <string>

namespace sweeply {

/// Writes the record of one run while it goes on. The file is made before the first change: a run that changes nothing
/// has no record, and neither has one of a target that cannot be written.
///
/// Each line is handed to the system at once, and is on the disk within a second; one that something cannot be undone
/// without is there before the change. Room for the next outcome is reserved beforehand, so that a full disk stops a
/// run before a change and not after it. Use by one thread at a time.
class RecordWriter final : public ChangeJournal {
  public:
    /// All outlive this. The header's run is chosen here.
    RecordWriter(FileManager& files, RunArchive& archive, RunHeader header);

    [[nodiscard]] std::string keptFolder() const override;
    Result<void> willChange() override;
    Result<void> willKeep(const KeptItem& item) override;
    void changed(const ChangeReport& report) override;
    /// An item of a run that changes otherwise: what was put back or purged.
    void add(const RecordedItem& item);
    /// The run is over.
    void finish(const RunSums& sums);

    /// The run's name; nothing while there is no record of it.
    [[nodiscard]] std::optional<std::string> run() const {
        return m_isMade ? std::optional(m_header.run) : std::nullopt;
    }

  private:
    Result<void> create();
    Result<void> append(const std::string& line);
    Result<void> reserve();
    Result<void> synchronize();
    [[nodiscard]] Error cannotWrite(const std::string& reason) const;

    FileManager& m_files;
    RunArchive& m_archive;
    RunHeader m_header;
    UniqueFd m_file;
    bool m_isMade = false;
    bool m_isReadOnly = false;
    std::optional<Error> m_failure; ///< from then on nothing may be changed
    std::uint32_t m_keptNow = 0;    ///< the number of the item whose line waits for its outcome
    std::uint64_t m_size = 0;
    std::uint64_t m_reserved = 0;
    std::chrono::steady_clock::time_point m_synchronized;
};

} // namespace sweeply
