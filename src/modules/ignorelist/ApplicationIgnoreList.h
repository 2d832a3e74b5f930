#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class FileManager;
class SWApplicationCore;
class UserDefaults;

/// The applications that the user wants left alone, by bundle identifier, kept in the preferences. Thread-safe.
class ApplicationIgnoreList final {
  public:
    /// All outlive this.
    ApplicationIgnoreList(UserDefaults& defaults, const FileManager& files, const SWApplicationCore& applications);

    [[nodiscard]] std::vector<std::string> ignoreAppsArray() const;
    void setNewAppsArray(const std::vector<std::string>& identifiers);
    [[nodiscard]] bool contains(std::string_view identifier) const;
    /// False when it was there already.
    bool addBundleToList(const std::string& identifier);
    /// False when it was not there.
    bool removeBundleFromList(const std::string& identifier);
    /// Adds the application at each path, or every application below a folder that is none; none from inside another
    /// application. Anything else is passed over. The identifiers found, also those that were listed already.
    std::vector<std::string> addFilesToIgnoreList(const std::vector<std::string>& paths);
    /// The identifiers of the applications at or below `path`.
    [[nodiscard]] std::vector<std::string> identifiersAt(const std::string& path) const;

    /// Did the list change since it was last reported?
    [[nodiscard]] bool needUpdate() const;
    void setNeedUpdate(bool need);

  private:
    [[nodiscard]] std::vector<std::string> stored() const;
    void store(const std::vector<std::string>& identifiers);

    UserDefaults& m_defaults;
    const FileManager& m_files;
    const SWApplicationCore& m_applications;
    std::mutex m_mutex; ///< held from reading the stored list to writing it
};

} // namespace sweeply
