#include "appcore/ownership/Claims.h"

#include "appcore/FolderConstants.h"
#include "appcore/SWApplicationCore.h"
#include "appcore/processes/LaunchItems.h"
#include "engine/tree/Node.h"
#include "platform/FileManager.h"
#include "platform/StringExtras.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr std::string_view kReceipts = "/Library/Receipts";

} // namespace

bool isInside(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

void showEvidence(Node& node, Evidence evidence, bool checksWeakMatches) {
    const bool isChecked = isCheckedAtFirst(evidence, checksWeakMatches);
    node.setEvidence(SharedEvidence(std::move(evidence)));
    node.setCheckedAlone(!isChecked);
    node.setEnabledWithoutRecalc(isChecked);
}

std::string programOfLaunchItem(const LaunchItems& launchItems, const FolderConstants& folders,
                                const std::string& path) {
    const auto definition = pathExtension(path) == "plist" ? launchItems.definitionAtPath(path) : Failure(Error{});
    return definition && definition->program ? normalisedPath(folders.expandTilde(*definition->program))
                                             : std::string();
}

Claims::Claims(const Services& services, std::shared_ptr<const ApplicationIndex> index, Subject subject)
    : m_services(services), m_index(std::move(index)), m_subject(std::move(subject)) {
    const std::string identifier = lowercaseString(m_subject.identifier);
    for (const auto& application : m_index->applications()) {
        if (!identifier.empty() && lowercaseString(application.identifier) == identifier)
            m_copies.insert(application.path);
    }
}

Evidence Claims::judged(const std::string& path, Evidence own) const {
    own.alsoClaimedBy.clear();
    if (isInside(path, m_subject.bundle))
        return own;
    Paths claimants = m_copies;
    addOverlapping(path, claimants);
    addByPlace(path, own, claimants);
    addByProgram(path, own, claimants);
    addByReceipt(path, own, claimants);
    addByPlugin(path, own, claimants);
    for (const auto& application : claimants) {
        if (mayClaim(application))
            own.alsoClaimedBy.push_back(application);
    }
    return own;
}

bool Claims::mayClaim(const std::string& application) const {
    return !isInside(application, m_subject.bundle) &&
           std::ranges::none_of(m_subject.going, [&](const auto& bundle) { return isInside(application, bundle); }) &&
           m_services.files.directoryExistsAtPath(application);
}

void Claims::addOverlapping(const std::string& path, Paths& claimants) const {
    for (const auto& application : m_index->applications()) {
        if (isInside(path, application.path) || isInside(application.path, path))
            claimants.insert(application.path);
    }
}

void Claims::addByPlace(const std::string& path, const Evidence& own, Paths& claimants) const {
    const auto folder = pathWithoutLastComponent(path);
    const auto terms = m_services.searched.termsOf(folder);
    if (terms == SearchTerms::None)
        return;
    const auto attributes = m_services.files.attributesOfItemAtPath(path, Links::DontFollow);
    const DirectoryEntry entry{std::string(lastPathComponent(path)), attributes ? attributes->type : FileType::Other};
    for (const auto& [application, match] : m_index->ownersOf(searchedEntry(m_services.files, folder, entry, terms))) {
        if (isAsGoodAs(match, own))
            claimants.insert(application->path);
    }
}

void Claims::addByProgram(const std::string& path, const Evidence& own, Paths& claimants) const {
    const auto& folders = m_services.searched.launchItems.folders;
    if (std::ranges::find(folders, pathWithoutLastComponent(path)) == folders.end())
        return;
    const auto program = programOfLaunchItem(m_services.launchItems, m_services.folders, path);
    for (const auto& application : m_index->applications()) {
        if (!program.empty() && isInside(program, application.path) &&
            isAsGoodAs({EvidenceRule::LaunchItem, EvidenceStrength::Certain, program}, own))
            claimants.insert(application.path);
    }
}

void Claims::addByReceipt(const std::string& path, const Evidence& own, Paths& claimants) const {
    const bool isReceipt = own.rule == EvidenceRule::Receipt &&
                           (path == own.term || (isInside(path, kReceipts) && nameWithoutExtension(path) == own.term));
    // Installers write where everybody's things are, not into a home: receipts are not read for that.
    if (!isReceipt && isInside(path, m_services.folders.home))
        return;
    const auto installed = isReceipt ? m_services.installed.installedBy(own.term, *m_index)
                                     : m_services.installed.installedWith(path, *m_index);
    for (const auto& [application, package] : installed) {
        if (isAsGoodAs({EvidenceRule::Receipt, EvidenceStrength::Certain, package}, own))
            claimants.insert(application);
    }
}

void Claims::addByPlugin(const std::string& path, const Evidence& own, Paths& claimants) const {
    const std::string name(lastPathComponent(path));
    if (own.rule != EvidenceRule::BroughtPlugin ||
        !isAsGoodAs({EvidenceRule::BroughtPlugin, EvidenceStrength::Certain, name}, own))
        return;
    for (auto& bundle : m_services.installed.bringing(name, *m_index))
        claimants.insert(std::move(bundle));
}

} // namespace sweeply
