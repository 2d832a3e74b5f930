#include "ui/RemovalSummary.h"

#include "app/ModuleCatalog.h"
#include "engine/ADScanControllerView.h"
#include "platform/Localization.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

bool isKeptByRuns(const PreviewedModule& module) { return module.module->removesWhatCannotBeMadeAgain(); }

/// What a person put somewhere himself is nobody's to make again: what he named, and what he threw away.
bool isPersonsOwn(const Node::Pointer& item) {
    const auto* why = item->evidence();
    return why && (why->rule == EvidenceRule::Named || why->rule == EvidenceRule::Trash);
}

std::string titleOf(const PreviewedModule& module) {
    const bool hasParts = module.row->correspondingScanController()->parts().size() > 1;
    return hasParts ? std::string(module.module->rootNode()->name()) : module.row->name();
}

} // namespace

RemovalSummary::RemovalSummary(std::vector<PreviewedModule> preview) : m_preview(std::move(preview)) {
    for (const auto& module : m_preview)
        m_cannotBeMadeAgain.push_back(isKeptByRuns(module) || std::ranges::any_of(module.items, isPersonsOwn));
}

std::uint64_t RemovalSummary::count() const {
    std::uint64_t count = 0;
    for (const auto& module : m_preview)
        count += module.items.size();
    return count;
}

std::uint64_t RemovalSummary::size() const {
    std::uint64_t size = 0;
    for (const auto& module : m_preview)
        size += module.size;
    return size;
}

bool RemovalSummary::isOfCachesAndLogsAlone() const {
    return std::ranges::all_of(m_preview, [](const PreviewedModule& module) {
        return module.row->viewName() == kCachesView || module.row->viewName() == kLogsView;
    });
}

bool RemovalSummary::hasWhatCannotBeMadeAgain() const {
    return std::ranges::find(m_cannotBeMadeAgain, true) != m_cannotBeMadeAgain.end();
}

bool RemovalSummary::hasWhatCanBeKept() const { return std::ranges::any_of(m_preview, isKeptByRuns); }

std::uint64_t RemovalSummary::countToKeep() const {
    std::uint64_t count = 0;
    for (const auto& module : m_preview)
        count += isKeptByRuns(module) ? module.items.size() : 0;
    return count - std::min<std::uint64_t>(count, m_details.obstacles.size());
}

std::vector<std::string> RemovalSummary::remarks(bool isKept, unsigned days) const {
    std::vector<std::string> remarks;
    const auto kept = isKept ? countToKeep() : 0;
    if (kept > 0)
        remarks.push_back(localizedFormat("Kept for %i days, and free no space until then: %i.", {days, kept}));
    if (kept < count())
        remarks.push_back(kept > 0 ? localizedString("The rest is gone for good; nothing goes to the Trash.")
                                   : localizedString("All of it is gone for good; nothing goes to the Trash."));
    if (m_details.isVolumeReadOnly)
        remarks.push_back(localizedString("Their volume is read-only: what lies on it can only stay."));
    if (m_details.needingAdministrator > 0)
        remarks.push_back(localizedFormat("Need an administrator: %i. You are asked for a password when they are "
                                          "reached.",
                                          {m_details.needingAdministrator}));
    return remarks;
}

std::string RemovalSummary::noteOn(std::size_t module, bool isKept) const {
    std::string note;
    if (isKept && isKeptByRuns(m_preview[module]))
        note = localizedString("kept, can be put back");
    else if (m_cannotBeMadeAgain[module])
        note = localizedString("cannot be made again");
    if (const auto count = module < m_details.modules.size() ? m_details.modules[module].needingAdministrator : 0)
        note += (note.empty() ? "" : "; ") + localizedFormat("need an administrator: %i", {count});
    return note;
}

std::vector<ListedSection> RemovalSummary::sections(bool isKept) const {
    std::vector<ListedSection> sections;
    for (std::size_t i = 0; i < m_preview.size(); ++i) {
        const auto& module = m_preview[i];
        ListedSection section{titleOf(module), module.items.size(), module.size, noteOn(i, isKept)};
        if (i < m_details.modules.size())
            section.items = m_details.modules[i].items;
        if (isKept && isKeptByRuns(module)) {
            for (auto& item : section.items) {
                const auto obstacle = std::ranges::find(m_details.obstacles, item.path, &Error::path);
                if (obstacle != m_details.obstacles.end())
                    item.note = localizedFormat("cannot be kept, goes for good: %@", {obstacle->reason});
            }
        }
        sections.push_back(std::move(section));
    }
    return sections;
}

} // namespace sweeply
