#pragma once

#include "engine/ADScanControllerView.h"

#include <memory>
#include <mutex>
#include <vector>

namespace sweeply {

/// A module made of sub-modules, shown as one row: their trees hang under its root, their figures are added up. The
/// sub-modules scan at the same time and clean one after another.
class ADGroupScanController : public ADScanControllerView {
  public:
    using ADScanControllerView::ADScanControllerView;
    ~ADGroupScanController() override;

    /// Before the first run.
    void addScanController(std::unique_ptr<ADScanController> controller);
    [[nodiscard]] const std::vector<std::unique_ptr<ADScanController>>& scanControllers() const {
        return m_scanControllers;
    }

    [[nodiscard]] std::vector<ADScanController*> parts() override;
    void preffernecesUpdated() override;
    [[nodiscard]] bool ifScanRunning() const override;
    [[nodiscard]] bool ifCleanRunning() const override;
    [[nodiscard]] bool ifAnyEnabled() const override;
    [[nodiscard]] std::size_t filesFound() const override;
    [[nodiscard]] std::size_t filesFoundInEnabled() const override;
    [[nodiscard]] std::uint64_t totalProcentage() const override;
    [[nodiscard]] std::uint64_t totalProcentageDone() const override;
    /// Of the first sub-module that works.
    [[nodiscard]] std::string currentItem() const override;
    void setEveryObjectEnabled(bool enabled) override;
    void setPaused(bool paused) override;
    void setStopped(bool stopped) override;
    void prepareForGlobalClean() override;
    void joinScanThread() override;
    void startScan() override;
    void startClean() override;
    /// A sub-module's run ended: the group and its idle sub-modules are stopped once none with anything checked still
    /// runs. Any thread.
    void childControllerStopped() override;

  private:
    std::vector<std::unique_ptr<ADScanController>> m_scanControllers;
    std::mutex m_stopMutex; ///< sub-modules end at the same time
};

} // namespace sweeply
