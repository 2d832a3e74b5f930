#pragma once

#include "engine/EngineServices.h"
#include "engine/tree/Node.h"

#include <vector>

namespace sweeply {

class ModuleHooks;
class ModuleResults;
class ModuleRun;

/// One clean of a module: goes through the checked part of its tree in order, has the module remove each checked leaf's
/// item, and takes out of the tree what is gone and the groups that this empties.
///
/// Runs on the thread that cleans. A pause holds it between two items, a stop ends it there.
class CleanWalk final {
  public:
    CleanWalk(const EngineServices& services, ModuleResults& results, ModuleHooks& hooks, ModuleRun& run)
        : m_services(services), m_results(results), m_hooks(hooks), m_run(run) {}

    void cleanChildren();

    /// The leaves whose items a clean of this tree would take now, in its order. Under the tree lock.
    [[nodiscard]] static std::vector<Node::Pointer> leavesToClean(const Node& root);

  private:
    void recursivlyCleanNode(Node& node);
    /// Removes a leaf's item and takes the node out; counts its bytes as handled either way.
    void cleanLeaf(Node& node);

    const EngineServices& m_services;
    ModuleResults& m_results;
    ModuleHooks& m_hooks;
    ModuleRun& m_run;
};

} // namespace sweeply
