#include "ui/ChosenApplications.h"

#include "engine/ADScanControllerView.h"
#include "engine/ScanCoordinator.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace sweeply {

namespace {

using Paths = ChosenApplications::Paths;

Paths without(const Paths& from, const Paths& paths) {
    Paths rest;
    std::ranges::set_difference(from, paths, std::inserter(rest, rest.end()));
    return rest;
}

} // namespace

void ChosenApplications::forget(const std::string& path) {
    for (auto* paths : {&m_chosen, &m_dealtWith, &m_given, &m_underAnalysis})
        paths->erase(path);
}

Paths ChosenApplications::listedPaths() const {
    Paths paths;
    const std::lock_guard lock(m_treeLock);
    for (const auto& entry : m_uninstaller.rootNode()->children())
        paths.insert(entry->path());
    return paths;
}

void ChosenApplications::takeOff(const Paths& paths) {
    std::vector<Node::Pointer> entries;
    {
        const std::lock_guard lock(m_treeLock);
        std::ranges::copy_if(m_uninstaller.rootNode()->children(), std::back_inserter(entries),
                             [&](const auto& entry) { return paths.contains(entry->path()); });
    }
    m_given = without(m_given, paths);
    m_dealtWith = without(m_dealtWith, paths);
    if (!entries.empty())
        m_uninstaller.removeSelectedItems(entries);
}

void ChosenApplications::catchUp() {
    if (!m_uninstaller.validateDrop() || m_uninstaller.globalScanController().ifScanRunning()) {
        // Nobody waits for what is chosen no more.
        if (m_uninstaller.ifScanRunning() && !m_isCutShort && !without(m_underAnalysis, m_chosen).empty()) {
            m_isCutShort = true;
            m_uninstaller.stopRun();
        }
        return;
    }
    auto surplus = without(m_given, m_chosen);
    if (std::exchange(m_isCutShort, false))
        surplus.insert(m_underAnalysis.begin(), m_underAnalysis.end()); // of none is listed all that there is
    m_underAnalysis.clear();
    if (!surplus.empty())
        takeOff(surplus);
    if (m_dealtWith == m_chosen)
        return;
    m_underAnalysis = without(without(m_chosen, m_dealtWith), listedPaths());
    m_dealtWith = m_chosen;
    if (m_underAnalysis.empty())
        return;
    m_given.insert(m_underAnalysis.begin(), m_underAnalysis.end());
    m_uninstaller.receiveDragData({m_underAnalysis.begin(), m_underAnalysis.end()});
}

} // namespace sweeply
