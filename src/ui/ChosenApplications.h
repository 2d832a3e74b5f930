#pragma once

#include "engine/EngineServices.h"

#include <set>
#include <string>
#include <utility>

namespace sweeply {

class ADScanControllerView;

/// Keeps the uninstaller's list in step with the applications that a person chose: has those analysed that are not in
/// it, and takes off those that are chosen no more. What came into it otherwise, by a drop for instance, stays. Main
/// thread.
class ChosenApplications final {
  public:
    using Paths = std::set<std::string>;

    /// Both outlive this.
    ChosenApplications(ADScanControllerView& uninstaller, TreeLock& treeLock)
        : m_uninstaller(uninstaller), m_treeLock(treeLock) {}

    void choose(Paths paths) { m_chosen = std::move(paths); }
    /// One is no more among those that can be chosen; what is listed of it stays.
    void forget(const std::string& path);
    /// Does what is to be done and can be done now; to be called again and again.
    void catchUp();

  private:
    /// Takes their entries off the list.
    void takeOff(const Paths& paths);
    [[nodiscard]] Paths listedPaths() const;

    ADScanControllerView& m_uninstaller;
    TreeLock& m_treeLock;
    Paths m_chosen;
    Paths m_dealtWith;     ///< what was chosen when we last caught up
    Paths m_given;         ///< to the uninstaller, by us
    Paths m_underAnalysis; ///< of those, the ones given last
    bool m_isCutShort = false;
};

} // namespace sweeply
