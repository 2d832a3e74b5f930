#pragma once

#include "platform/Error.h"
#include "platform/FileAttributes.h"
#include "platform/ItemIdentity.h"

#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace sweeply {

class DiskSizes;
class FileManager;

/// What somebody who looks into a bundle wants of an entry there.
enum class Interest : std::uint8_t {
    Nothing,
    Below, ///< to be asked about what is in it
    Item,  ///< the entry, measured as one item with all below it
};

/// Asked about entries by name and type, from several threads at once; may outlive whoever made it.
using InterestIn = std::function<Interest(std::string_view name, FileType type)>;

/// What one walk through a bundle found for somebody.
struct BundleSurvey {
    struct Item {
        std::string path; ///< of the target
        FileType type = FileType::Other;
        mode_t mode = 0; ///< of a file
        MeasuredItem measured = {};
    };
    std::vector<Item> items;      ///< in the file system's order
    std::optional<Error> failure; ///< the first folder that could not be read
};

/// Walks through bundles for one or several at once: each entry is read once, whoever wants it. Any number of threads.
class BundleSurveyor final {
  public:
    /// Both outlive this.
    BundleSurveyor(const FileManager& files, const DiskSizes& sizes) : m_files(files), m_sizes(sizes) {}

    /// What interests one; nothing where `stop` is asked for. What cannot be read is among the target's problems.
    [[nodiscard]] BundleSurvey survey(const std::string& bundle, const InterestIn& interest,
                                      const std::stop_token& stop) const;
    /// What interests each of at most 31, in their order. Nothing where a part of the bundle could not be read, where
    /// there is very much to tell, or where `stop` is asked for: then each is to look alone.
    [[nodiscard]] std::optional<std::vector<BundleSurvey>>
    surveyForAll(const std::string& bundle, std::span<const InterestIn> interests, const std::stop_token& stop) const;

  private:
    const FileManager& m_files;
    const DiskSizes& m_sizes;
};

} // namespace sweeply
