#pragma once

#include "appcore/ApplicationFilter.h"
#include "appcore/FolderConstants.h"
#include "appcore/WorkControl.h"
#include "appcore/ownership/ApplicationTerms.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class LaunchServices;
class SystemLog;

/// Which applications are in the target, what they are called, and where things that belong to them may lie.
///
/// One thread runs createApplicationsArray() once; from then on the list stands still. Everything else may be called
/// from any thread at any time.
class SWApplicationCore final {
  public:
    using Paths = std::vector<std::string>;

    /// All outlive this. `registry` is the system's list of applications, or null where the target's generation has
    /// none.
    SWApplicationCore(const FileManager& files, const FolderConstants& folders, const LaunchServices* registry,
                      SystemLog& log);

    /// Builds the list after `delay`: from the registry, or, when that fails, from the applications folder. A stop ends
    /// it at once, with whatever was found.
    void createApplicationsArray(std::stop_token stop, std::chrono::milliseconds delay);

    /// The applications offered to the user, once they are known; what is known so far (nothing, mostly) when `control`
    /// is stopped meanwhile. Null waits without end.
    [[nodiscard]] Paths createApplicationsArrayForController(const WorkControl* control) const;
    /// The same for somebody who does not work with the list himself: what is missing from it is no problem of his.
    [[nodiscard]] Paths applicationsOnceKnown(const std::stop_token& stop = {}) const {
        return waitForApplications(stop);
    }
    /// Everything the registry knew, unfiltered and with repetitions, or the list offered to the user when the registry
    /// was not asked. Does not wait.
    [[nodiscard]] Paths getAllApllicationArray() const;
    /// The application bundles anywhere below `folder`, none from inside another. Obeys `control` unless it is null.
    [[nodiscard]] Paths createApplicationsArrayInPathDeep(std::string_view folder, WorkControl* control) const;

    /// From the bundle's Info.plist, read anew each time; nothing where that is missing or damaged.
    [[nodiscard]] std::optional<std::string> bundleIDForAppWithPath(std::string_view path) const;
    /// The name that the bundle's Info.plist gives, or its executable's; remembered once found.
    [[nodiscard]] std::optional<std::string> appNameForAppWithPath(std::string_view path) const;
    /// All that the bundle's Info.plist tells, read once.
    [[nodiscard]] ApplicationTerms termsOfAppWithPath(std::string_view path) const;

    // Places, all of them expanded, the user's before the machine's

    [[nodiscard]] const Paths& preferencesPaths() const { return m_preferencesPaths; }
    [[nodiscard]] const Paths& applicationSupportPaths() const { return m_applicationSupportPaths; }
    /// Each kind's folder for the machine, then for the user.
    [[nodiscard]] const Paths& pluginsPaths() const { return m_pluginsPaths; }
    [[nodiscard]] static const Paths& pluginExtensions();

  private:
    Paths findApplications(std::string_view folder, const std::stop_token& stop, WorkControl* control,
                           ReadProblems& problems) const;
    [[nodiscard]] Paths waitForApplications(const std::stop_token& stop) const;
    /// Who works with the list works with what is missing from it.
    void tellProblemsOfList() const;
    [[nodiscard]] std::optional<Paths> readRegistry() const;
    [[nodiscard]] Paths filtered(const Paths& registered) const;
    [[nodiscard]] std::optional<std::string> nameIn(const plist::Value& info, std::string_view path) const;

    const FileManager& m_files;
    const LaunchServices* m_registry;
    SystemLog& m_log;
    std::string m_applicationsFolder;
    std::optional<ApplicationFilter> m_applicationFilter;
    ReadProblems m_problemsOfList;

    Paths m_preferencesPaths;
    Paths m_applicationSupportPaths;
    Paths m_pluginsPaths;

    mutable std::mutex m_mutex;
    mutable std::condition_variable_any m_listIsReady;
    // Guarded by m_mutex.
    bool m_appArrayCreated = false;
    Paths m_filteredApps;
    std::optional<Paths> m_allApps;
    mutable std::map<std::string, std::string, std::less<>> m_names; ///< by application path
};

} // namespace sweeply
