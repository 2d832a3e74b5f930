#include "appcore/bundles/BundleSurvey.h"

#include "appcore/sizes/DiskSizes.h"
#include "platform/DirectoryEnumerator.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace sweeply {

namespace {

/// What several share is kept until all have had it.
constexpr std::size_t kManyItems = 20'000;

/// One of several who look, as a bit.
using Askers = std::uint32_t;

/// One walk through one bundle, for all who want something of it.
class Walk final {
  public:
    Walk(const std::string& bundle, std::span<const InterestIn> interests, const DiskSizes& sizes)
        : m_bundle(bundle), m_interests(interests),
          m_sizes(sizes), m_looking{static_cast<Askers>((std::uint64_t{1} << interests.size()) - 1)} {}

    struct Found {
        BundleSurvey::Item item;
        Askers askers = 0;
    };

    /// False where it ended early: by `stop`, or for having found more than `limit` items.
    bool run(DirectoryEnumerator& walk, const std::stop_token& stop, std::size_t limit) {
        while (const auto entry = walk.next()) {
            if (stop.stop_requested() || m_found.size() > limit)
                return false;
            look(walk, *entry);
        }
        m_isWhole = m_isWhole && !walk.failure();
        return true;
    }

    /// Was everything read that somebody wanted?
    [[nodiscard]] bool isWhole() const { return m_isWhole; }
    [[nodiscard]] std::vector<Found>& found() { return m_found; }

  private:
    struct OpenItem {
        std::size_t index; ///< in m_found
        int level;
    };

    void look(DirectoryEnumerator& walk, const DirectoryEnumerator::Entry& entry) {
        while (!m_open.empty() && m_open.back().level >= entry.level)
            m_open.pop_back();
        const auto name = lastPathComponent(entry.path);
        const bool isFolder = entry.type == FileType::Directory;
        const auto level = static_cast<std::size_t>(entry.level);
        Askers below = 0;
        Askers wanted = 0;
        for (std::size_t i = 0; m_looking[level] >> i != 0; ++i) {
            const Askers asker = Askers{1} << i;
            if ((m_looking[level] & asker) == 0)
                continue;
            const auto interest = m_interests[i](name, entry.type);
            if (interest == Interest::Item)
                wanted |= asker;
            else if (interest == Interest::Below && isFolder)
                below |= asker;
        }
        if (isFolder) {
            for (const auto& open : m_open)
                m_found[open.index].item.measured.identity.addEntry(name);
            if (wanted != 0)
                addFolder(entry, wanted);
            if (below == 0 && m_open.empty())
                return walk.skipDescendants();
            m_looking.resize(level + 1);
            m_looking.push_back(below);
        } else if (wanted != 0 || !m_open.empty()) {
            addFile(walk, entry, wanted);
        }
    }

    void addFolder(const DirectoryEnumerator::Entry& entry, Askers wanted) {
        auto& item = add(entry, wanted);
        item.measured.identity.addEntry({});
        item.measured.identity.kind = ItemKind::Folder;
        m_open.push_back({m_found.size() - 1, entry.level});
    }

    void addFile(const DirectoryEnumerator& walk, const DirectoryEnumerator::Entry& entry, Askers wanted) {
        const auto attributes = walk.attributes();
        if (!attributes && attributes.error().kind != ErrorKind::NotFound)
            m_isWhole = false;
        if (attributes && attributes->type != FileType::Directory) {
            for (const auto& open : m_open) {
                auto& measured = m_found[open.index].item.measured;
                measured.size += m_sizes.charged(attributes->size);
                measured.identity.addEntry(lastPathComponent(entry.path), attributes->size, attributes->modified);
            }
        }
        if (wanted == 0)
            return;
        auto& item = add(entry, wanted);
        if (!attributes)
            return;
        item.type = attributes->type;
        item.mode = attributes->mode;
        item.measured = m_sizes.measureFile(*attributes);
    }

    BundleSurvey::Item& add(const DirectoryEnumerator::Entry& entry, Askers wanted) {
        m_found.push_back({{joinedPath(m_bundle, entry.path), entry.type, 0, {}}, wanted});
        return m_found.back().item;
    }

    const std::string& m_bundle;
    const std::span<const InterestIn> m_interests;
    const DiskSizes& m_sizes;
    std::vector<Askers> m_looking; ///< by level: who is to be asked about entries there
    std::vector<OpenItem> m_open;  ///< those that hold the entry just met, the outer ones first
    std::vector<Found> m_found;
    bool m_isWhole = true;
};

} // namespace

BundleSurvey BundleSurveyor::survey(const std::string& bundle, const InterestIn& interest,
                                    const std::stop_token& stop) const {
    BundleSurvey survey;
    auto folders = m_files.enumeratorAtPath(bundle);
    Walk walk(bundle, {&interest, 1}, m_sizes);
    if (!walk.run(folders, stop, std::numeric_limits<std::size_t>::max()))
        return {};
    for (auto& found : walk.found()) {
        // A second look tells what it is that could not be read, and of which item.
        if (!walk.isWhole())
            found.item.measured = m_sizes.measure(found.item.path);
        survey.items.push_back(std::move(found.item));
    }
    survey.failure = folders.failure();
    return survey;
}

std::optional<std::vector<BundleSurvey>> BundleSurveyor::surveyForAll(const std::string& bundle,
                                                                      std::span<const InterestIn> interests,
                                                                      const std::stop_token& stop) const {
    ReadProblems problems; // told by those who look alone then, if they want what could not be read
    auto folders = m_files.enumeratorAtPath(bundle, problems);
    Walk walk(bundle, interests, m_sizes);
    if (!walk.run(folders, stop, kManyItems) || !walk.isWhole())
        return std::nullopt;
    std::vector<BundleSurvey> surveys(interests.size());
    for (auto& found : walk.found()) {
        for (std::size_t i = 0; found.askers >> i != 0; ++i) {
            if ((found.askers >> i & 1U) != 0)
                surveys[i].items.push_back(found.askers >> i == 1 ? std::move(found.item) : found.item);
        }
    }
    return surveys;
}

} // namespace sweeply
