#pragma once

#include "appcore/TargetPart.h"
#include "engine/tree/Evidence.h"
#include "platform/Error.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace sweeply {

class ApplicationIndex;
class ChangeGate;
class FileManager;
class InstalledApplications;
class LaunchItems;
class LoginItems;
class SWApplicationCore;

/// Finds what applications that are gone left in the user's account: preferences, launch items, login items. Takes its
/// picture of the system when it is made; the list of applications must be complete by then. One thread at a time.
class LeftoversCleaner final {
  public:
    struct Services {
        const FileManager& files;
        ChangeGate& gate;
        const SWApplicationCore& applications;
        InstalledApplications& installed;
        const LoginItems& loginItems;
        const LaunchItems& launchItems;
        /// Told of what could not be understood or removed; what could not be read is among the target's problems.
        std::function<void(const Error&)> reportProblem;
        /// What of the target is looked at.
        TargetPart part = {};
    };
    using Paths = std::vector<std::string>;
    using PathSet = std::set<std::string, std::less<>>;

    /// All outlive this.
    explicit LeftoversCleaner(Services services);

    /// Finds all three kinds, preferences first: then every launch item still counts as one whose program is there.
    void leftoversAnalyse();

    // The tests of preference files

    [[nodiscard]] PathSet getPrefsOfNonexistentApps() const;
    /// Not modified for more than so many weeks.
    [[nodiscard]] PathSet getPrefsNotUsedForWeeks(int weeks) const;
    /// Called like a launch item that is not to be removed.
    [[nodiscard]] PathSet getEqualPrefsFormLaunch() const;

    // The results

    /// Found once.
    const PathSet& getPrefFilesToRemove();
    /// Found anew with each call.
    const PathSet& getLaunchFilesToRemove();
    /// Found once.
    const Paths& getLoginItemsToRemove();
    /// Why a launch file is left over, as it is now.
    [[nodiscard]] Evidence evidenceOfLaunchFile(const std::string& path) const;

    // Removals of what was found, which is forgotten then

    void removePrefFiles();
    /// Has the system forget the launch items; their files stay.
    void removeLaunchFiles();
    /// Removes files at the login items' paths. The items stay in the list of login items.
    void removeLoginItems();

    [[nodiscard]] const ApplicationIndex& allApps() const { return *m_allApps; }
    [[nodiscard]] const Paths& allPrefFiles() const { return m_allPrefFiles; }
    /// Those found by the last getLaunchFilesToRemove().
    [[nodiscard]] const PathSet& launchFilesToRemove() const { return m_launchFilesToRemove; }
    [[nodiscard]] const Paths& allLaunchFiles() const { return m_allLaunchFiles; }

  private:
    [[nodiscard]] Paths getAllPrefFiles() const;
    [[nodiscard]] std::unordered_set<std::string> namesOfStayingLaunchFiles() const;
    [[nodiscard]] bool isNotUsedForWeeks(const std::string& path, int weeks) const;
    void deleteFile(const std::string& path);

    Services m_services;
    std::shared_ptr<const ApplicationIndex> m_allApps;
    Paths m_allPrefFiles;
    Paths m_allLaunchFiles;
    std::optional<PathSet> m_prefFilesToRemove;
    PathSet m_launchFilesToRemove;
    std::optional<Paths> m_loginItemsToRemove;
};

} // namespace sweeply
