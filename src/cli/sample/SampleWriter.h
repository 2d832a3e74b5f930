#pragma once

#include "cli/sample/SampleVolume.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"

#include <ctime>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply::sample {

enum class PropertyListForm { Xml, Binary };

/// Puts folders, files and links into a new volume and counts them. Paths are target paths; the folders above a file
/// are made with it.
///
/// The first failure is kept and everything after it is passed over, so that the parts read as plain lists.
class SampleWriter final {
  public:
    SampleWriter(FileManager& files, unsigned scale);

    void folder(const std::string& path);
    void file(const std::string& path, std::string_view contents, mode_t mode = 0644);
    /// A file of `size` bytes, at most 1 MiB, that look like compressed data and depend on the path alone.
    void opaqueFile(const std::string& path, std::size_t size);
    /// A log of exactly `size` bytes of lines.
    void log(const std::string& path, std::size_t size);
    void propertyList(const std::string& path, const plist::Value& value,
                      PropertyListForm form = PropertyListForm::Xml);
    void link(const std::string& path, const std::string& destination);
    /// Sets when the file at `path` was changed last.
    void setModified(const std::string& path, std::time_t seconds);

    [[nodiscard]] const FileManager& files() const { return m_files; }
    [[nodiscard]] unsigned scale() const { return m_scale; }
    [[nodiscard]] const SampleTotals& totals() const { return m_totals; }
    [[nodiscard]] const std::optional<Error>& failure() const { return m_failure; }
    /// For a part that reads the volume itself.
    void fail(Error error);

  private:
    bool makeParent(const std::string& path);

    FileManager& m_files;
    unsigned m_scale;
    SampleTotals m_totals;
    std::optional<Error> m_failure;
    std::set<std::string> m_folders; ///< made so far
    std::string m_noise;             ///< what opaque files are cut out of
};

/// A dictionary of `members`, in their order.
[[nodiscard]] inline plist::Value dictionary(std::vector<plist::Dictionary::Member> members) {
    return plist::Dictionary(std::move(members));
}

/// `name` for the first of several copies of the same thing, "name 2" and so on for the others.
[[nodiscard]] std::string copyName(std::string_view name, unsigned copy);

} // namespace sweeply::sample
