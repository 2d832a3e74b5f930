#pragma once

#include "appcore/ownership/InstalledApplications.h"
#include "appcore/ownership/SearchedFolders.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace sweeply {

class FileManager;
class LaunchItems;
class Node;
struct FolderConstants;

/// Which other applications claim what was found for one application or package, its subject: those that the same rules
/// find for the same item, as surely or more so, and every other copy of the subject. An item that holds another
/// application, or lies in one, is that application's.
///
/// An application inside the subject is no other one; nor is one that goes in the same run, or one that is not there
/// any more. For one thread at a time.
class Claims final {
  public:
    struct Services {
        const FileManager& files;
        const FolderConstants& folders;
        const SearchedFolders& searched;
        const LaunchItems& launchItems;
        InstalledApplications& installed;
    };
    struct Subject {
        std::string bundle;          ///< or a package file
        std::string identifier;      ///< empty without one
        std::set<std::string> going; ///< bundles that go in the same run
    };

    /// What the services refer to outlives this.
    Claims(const Services& services, std::shared_ptr<const ApplicationIndex> index, Subject subject);

    /// The evidence with whoever claims the item at `path`.
    [[nodiscard]] Evidence judged(const std::string& path, Evidence own) const;
    [[nodiscard]] const Subject& subject() const { return m_subject; }

  private:
    using Paths = std::set<std::string>;

    [[nodiscard]] bool mayClaim(const std::string& application) const;
    void addByPlace(const std::string& path, const Evidence& own, Paths& claimants) const;
    void addByProgram(const std::string& path, const Evidence& own, Paths& claimants) const;
    void addByReceipt(const std::string& path, const Evidence& own, Paths& claimants) const;
    void addByPlugin(const std::string& path, const Evidence& own, Paths& claimants) const;
    void addOverlapping(const std::string& path, Paths& claimants) const;

    const Services m_services;
    const std::shared_ptr<const ApplicationIndex> m_index;
    const Subject m_subject;
    Paths m_copies; ///< other copies of the subject
};

/// Gives the node its evidence and the check mark that such an item has at first.
void showEvidence(Node& node, Evidence evidence, bool checksWeakMatches);

/// Is `path` this folder, or somewhere in it?
[[nodiscard]] bool isInside(std::string_view path, std::string_view folder);

/// The program that the launch item at `path` starts, as a path; empty where it cannot be told.
[[nodiscard]] std::string programOfLaunchItem(const LaunchItems& launchItems, const FolderConstants& folders,
                                              const std::string& path);

} // namespace sweeply
