#pragma once

#include "platform/TargetRoot.h"

#include <cstdint>
#include <optional>
#include <string>

namespace sweeply {

class FileManager;
struct ChangeRequest;

/// Whether this process's user may make a change without an administrator, judged before anything is tried. It goes by
/// the permissions of the item and of the folder around it; what stands deeper in a folder may still refuse. One
/// thread.
class OwnRights final {
  public:
    enum class Verdict : std::uint8_t { Suffice, NeedAdministrator, ReadOnlyVolume };

    /// `files` outlives this.
    explicit OwnRights(const FileManager& files) : m_files(files) {}

    /// Is this process an administrator's, whose rights suffice for everything?
    [[nodiscard]] static bool areAdministrators();
    /// Of what has just been looked at; what is gone or cannot be looked at suffices.
    [[nodiscard]] Verdict forChange(const ChangeRequest& request);

  private:
    [[nodiscard]] Verdict forItem(const std::string& path, bool isRewritten);

    const FileManager& m_files;
    std::string m_folder; ///< the last one: items of one folder mostly follow each other
    std::optional<LocatedItem> m_inFolder;
    Verdict m_folderVerdict = Verdict::Suffice;
};

} // namespace sweeply
