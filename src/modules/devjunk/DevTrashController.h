#pragma once

#include "appcore/bundles/SharedSurveys.h"
#include "engine/ADScanControllerView.h"
#include "modules/ModuleServices.h"

#include <string>
#include <vector>

namespace sweeply {

/// What serves only the developers of applications, left inside their bundles; and in folders that the user drops on
/// it, the clutter that the desktop, the trash and other systems leave behind.
class DevTrashController final : public ADScanControllerView {
  public:
    DevTrashController(const ModuleServices& services, ScanCoordinator& coordinator);
    ~DevTrashController() override { stopAndJoin(); }

    [[nodiscard]] std::string_view moduleName() const override { return "dev-junk"; }
    [[nodiscard]] std::string defaultsName() const override { return "CleanDevJunk"; }
    [[nodiscard]] bool needToSetUserDefalts() const override { return true; }
    [[nodiscard]] bool shouldRespondToDragEvents() const override { return true; }
    [[nodiscard]] bool shouldBeDragSource() const override { return true; }
    bool shouldCleanApplication(const std::string& path) override;
    void analyzeFile(const std::string& path) override;

    /// The direct entries of a folder, as full paths; none where it cannot be listed.
    [[nodiscard]] static std::vector<std::string> enumerateAllTrashAtPath(const FileManager& files,
                                                                          const std::string& path);
    /// The direct entries of each direct entry of a folder.
    [[nodiscard]] static std::vector<std::string> enumerateAllTrashesAtPath(const FileManager& files,
                                                                            const std::string& path);

  protected:
    void scanThread() override;

  private:
    [[nodiscard]] std::string className() const override { return "DevTrashController"; }
    struct Junk {
        std::string path;
        MeasuredItem measured;
    };
    void analyzeApplication(const std::string& path, SharedSurveys::Part& surveys);
    void analyzeApplications(const std::vector<std::string>& paths);
    void analyzeFolder(const std::string& path);
    /// Below the category, under a node for the dropped folder.
    void addObject(const Junk& item, const Node::Pointer& category, const std::string& folderPath);
    void addObjectFromArray(const std::vector<std::string>& items, const Node::Pointer& category);
    /// Puts a category under the root, emptied, unless it is there.
    void show(const Node::Pointer& category);
    void hideIfEmpty(const Node::Pointer& category);
    [[nodiscard]] static Node::Pointer itemNode(const std::string& path, Icon icon, const MeasuredItem& measured,
                                                const SharedEvidence& evidence);

    ModuleServices m_junk;
    const SharedEvidence m_developerFile{EvidenceRule::DeveloperFile};
    const SharedEvidence m_finderFile{EvidenceRule::FinderFile};
    const SharedEvidence m_trash{EvidenceRule::Trash};
    const Node::Pointer m_applicationNode;
    const Node::Pointer m_dsStoreNode;
    const Node::Pointer m_trashNode;
    const Node::Pointer m_othersNode;
    const Node::Pointer m_windowsNode;
};

} // namespace sweeply
