#pragma once

#include "appcore/bundles/SharedSurveys.h"
#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"
#include "platform/UniqueFd.h"

#include <atomic>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class ADTaskRunner;
class Alerts;
class SystemVersion;
class ToolTable;

/// Executables in applications that carry code for other processors than the machine's: one item for an application,
/// and below it one for each executable, as big as what slimming it frees. An application is slimmed once; a file in
/// its bundle marks it.
class UniversalBinariesController final : public ADScanControllerView {
  public:
    struct Tools {
        const ToolTable& table;
        Alerts& alerts;
    };

    /// `family` is the machine's processor family, "unknown" where it cannot be told; then nothing is ever found.
    /// `version` tells which processors of the family have code of their own.
    UniversalBinariesController(const ModuleServices& services, ScanCoordinator& coordinator, Tools tools,
                                std::string family, const SystemVersion& version);
    ~UniversalBinariesController() override;

    [[nodiscard]] std::string_view moduleName() const override { return "binaries"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanUniversalBinaries"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    [[nodiscard]] bool shouldBeDragSource() const override { return true; }
    /// Not one that the user wants left alone, nor one that was slimmed before.
    bool shouldCleanApplication(const std::string& path) override;
    void analyzeFile(const std::string& path) override;
    [[nodiscard]] ChangeRequest changeFor(const Node& node) const override;

    [[nodiscard]] const std::string& getMyArchitecture() const { return m_family; }
    /// The names of the slices that belong to a family; none for an unknown one.
    [[nodiscard]] std::vector<std::string> allArchitecturesToLeavForArchitecture(std::string_view family) const;
    /// Bytes that slimming the executable at `path` would free; 0 for anything that is not for several processors.
    [[nodiscard]] std::uint64_t getUBSize(const std::string& path);
    [[nodiscard]] bool isSlimedApplicationAtPath(const std::string& path) const;
    bool markApplicationAtPathAsSlimed(const std::string& path);

  protected:
    void scanThread() override;
    ChangeOutcome cleanThisNode(Node& node) override;

  private:
    /// An executable that is fat by its first bytes, held open.
    struct Candidate {
        std::string application;
        std::string path;
        ItemIdentity identity;
        UniqueFd file;
    };

    [[nodiscard]] std::string className() const override { return "UniversalBinariesController"; }
    /// False, and the person is told once, when nobody knows the processors.
    bool knowsArchitecture();
    /// Gathers candidates, and adds those that can be slimmed once there are many.
    void searchForUBInPath(const std::string& application, SharedSurveys::Part& surveys);
    /// Keeps it unless its first bytes say that it cannot be slimmed.
    void addCandidate(Candidate candidate);
    /// Adds those of the candidates gathered so far that can be slimmed.
    void addSlimmable();
    void add(const Candidate& candidate, std::uint64_t size);
    /// Bytes to be freed of each, in order.
    [[nodiscard]] std::vector<std::uint64_t> foreignBytesOf(std::span<const Candidate> candidates);
    void analyzeApplication(const std::string& path, SharedSurveys::Part& surveys);

    ModuleServices m_binaries;
    Alerts& m_alerts;
    const std::string m_family;
    const bool m_hasManyNames; ///< a system that knows every processor of a family by name
    const std::vector<std::string> m_keptSlices;
    const std::unique_ptr<ADTaskRunner> m_tasks;
    std::vector<Candidate> m_candidates; ///< the scan thread's
    std::atomic<bool> m_saidUnknown{false};
    const SharedEvidence m_evidence{EvidenceRule::ForeignCode}; ///< of every item
};

} // namespace sweeply
