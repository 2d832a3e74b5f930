#include "appcore/bundles/SharedSurveys.h"

#include "platform/BlocksRead.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>

namespace sweeply {

namespace {

/// More who take part would each look alone.
constexpr unsigned kMostMembers = 31;
/// As many as most machines have processors.
constexpr unsigned kHelpersFromMemory = 2;
/// So many bundles the helpers are ahead of whoever is furthest: enough never to be waited for, and few enough that
/// they rest as soon as everybody is paused.
constexpr std::size_t kBundlesAhead = 16;
/// Who has to wait waits for so many at once, but not for long: waking somebody up for each costs more than to read it.
constexpr std::size_t kBundlesAtOnce = 8;
constexpr std::chrono::milliseconds kShortWait{20};
/// So many items are kept for who is behind; with their paths some 16 MiB.
constexpr std::size_t kKeptItems = 60'000;

} // namespace

class SharedSurveys::Part::Shared final {
  public:
    explicit Shared(const BundleSurveyor& surveyor) : m_surveyor(surveyor) {}

    /// The number of the new member; nothing where there are too many, or where the last one has left.
    std::optional<unsigned> join(const InterestIn& interest) {
        const std::lock_guard lock(m_mutex);
        unsigned number = 0;
        while (m_members.contains(number))
            ++number;
        if (m_isOver || number == kMostMembers)
            return std::nullopt;
        m_members.emplace(number, Member{interest});
        return number;
    }

    void leave(unsigned number) {
        const std::lock_guard lock(m_mutex);
        m_members.erase(number);
        m_isOver = m_members.empty();
        m_moved.notify_all();
        for (auto& bundle : m_bundles) {
            std::erase(bundle.readers, number);
            if (const auto survey = bundle.surveys.find(number); survey != bundle.surveys.end())
                drop(bundle, survey);
        }
    }

    /// The first list counts; all who scan at the same time have the same.
    void expect(const std::vector<std::string>& bundles) {
        const std::lock_guard lock(m_mutex);
        if (!m_bundles.empty() || bundles.size() < 2)
            return;
        m_bundles.resize(bundles.size());
        for (std::size_t i = 0; i < bundles.size(); ++i) {
            m_bundles[i].path = bundles[i];
            m_indexes.emplace(bundles[i], i);
        }
        startHelpers(kHelpersFromMemory);
    }

    /// Waits for the helpers to come to it. Nothing where the member is to look alone, or has been stopped.
    std::optional<BundleSurvey> take(unsigned number, const std::string& path, const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        const auto index = m_indexes.find(path);
        if (index == m_indexes.end() || m_helpers.empty())
            return std::nullopt;
        if (std::exchange(m_wantsMoreHelpers, false))
            startHelpers(kHelpersFromDisk);
        auto& bundle = m_bundles[index->second];
        auto& member = m_members.at(number);
        moveTo(member, index->second);
        if (!bundle.isRead && !waitFor(index->second, lock, stop))
            return std::nullopt;
        std::optional<BundleSurvey> survey;
        if (const auto found = bundle.surveys.find(number); found != bundle.surveys.end()) {
            survey = std::move(found->second);
            m_keptItems -= survey->items.size();
            bundle.surveys.erase(found);
        }
        moveTo(member, index->second + 1);
        return survey;
    }

  private:
    struct Member {
        InterestIn interest;
        std::size_t position = 0; ///< of the bundle that he wants, or wanted last
    };
    struct Bundle {
        std::string path;
        std::vector<unsigned> readers; ///< for whom it is read
        std::map<unsigned, BundleSurvey> surveys;
        bool isRead = false;
    };
    /// Somebody waits for two bundles, and those between them will mostly be read then.
    struct Wait {
        std::size_t first;
        std::size_t last;
    };
    using Surveys = std::map<unsigned, BundleSurvey>;

    // All below with m_mutex held.

    void startHelpers(unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            try {
                m_helpers.emplace_back([this](const std::stop_token& stop) { help(stop); });
            } catch (const std::system_error&) {
                return; // with fewer, or none
            }
        }
    }

    /// False where `stop` is asked for.
    bool waitFor(std::size_t bundle, std::unique_lock<std::mutex>& lock, const std::stop_token& stop) {
        const auto wait =
            m_waits.insert(m_waits.end(), {bundle, std::min(bundle + kBundlesAtOnce, m_bundles.size()) - 1});
        const auto isOver = [this, wait] { return hasBeenRead(*wait); };
        if (!m_read.wait_for(lock, stop, kShortWait, isOver)) {
            wait->last = bundle;
            m_read.wait(lock, stop, isOver);
        }
        m_waits.erase(wait);
        return m_bundles[bundle].isRead;
    }

    [[nodiscard]] bool hasBeenRead(const Wait& wait) const {
        return m_bundles[wait.first].isRead && m_bundles[wait.last].isRead;
    }

    void moveTo(Member& member, std::size_t position) {
        member.position = std::max(member.position, position);
        for (const auto least = leastPosition(); m_firstKept < least; ++m_firstKept)
            dropAll(m_bundles[m_firstKept]);
        if (m_restingHelpers > 0 && hasWork())
            m_moved.notify_all();
    }

    [[nodiscard]] std::size_t leastPosition() const {
        auto least = m_bundles.size();
        for (const auto& [number, member] : m_members)
            least = std::min(least, member.position);
        return least;
    }

    [[nodiscard]] std::size_t furthestPosition() const {
        std::size_t furthest = 0;
        for (const auto& [number, member] : m_members)
            furthest = std::max(furthest, member.position);
        return furthest;
    }

    void drop(Bundle& bundle, Surveys::iterator survey) {
        m_keptItems -= survey->second.items.size();
        bundle.surveys.erase(survey);
    }

    void dropAll(Bundle& bundle) {
        while (!bundle.surveys.empty())
            drop(bundle, bundle.surveys.begin());
    }

    /// Lets those who are furthest behind look alone.
    void keepFewItems() {
        for (auto i = m_firstKept; i < m_next && m_keptItems > kKeptItems; ++i)
            dropAll(m_bundles[i]);
    }

    [[nodiscard]] bool hasWork() const {
        return m_next < m_bundles.size() && m_next < furthestPosition() + kBundlesAhead;
    }

    /// Until there is work; false where `stop` is asked for.
    bool rest(std::unique_lock<std::mutex>& lock, const std::stop_token& stop) {
        ++m_restingHelpers;
        const bool goesOn = m_moved.wait(lock, stop, [this] { return hasWork(); });
        --m_restingHelpers;
        return goesOn;
    }

    /// Reads one bundle after the other for all who take part.
    void help(const std::stop_token& stop) {
        std::unique_lock lock(m_mutex);
        while (rest(lock, stop)) {
            auto& bundle = m_bundles[m_next++];
            std::vector<InterestIn> interests;
            for (const auto& [number, member] : m_members) {
                // Who has passed it, or left it out, does not come back.
                if (m_next <= member.position)
                    continue;
                interests.push_back(member.interest);
                bundle.readers.push_back(number);
            }
            const auto readers = bundle.readers;
            std::optional<std::vector<BundleSurvey>> surveys;
            if (!interests.empty()) {
                lock.unlock();
                const auto blocksBefore = blocksReadByThisThread();
                surveys = m_surveyor.surveyForAll(bundle.path, interests, stop);
                const bool isFromDisk = blocksReadByThisThread() - blocksBefore > kFewBlocks;
                lock.lock();
                m_wantsMoreHelpers |= isFromDisk && !std::exchange(m_isFromDisk, m_isFromDisk || isFromDisk);
            }
            for (std::size_t i = 0; surveys && i < readers.size(); ++i) {
                if (std::ranges::find(bundle.readers, readers[i]) == bundle.readers.end())
                    continue; // he has left
                m_keptItems += (*surveys)[i].items.size();
                bundle.surveys.emplace(readers[i], std::move((*surveys)[i]));
            }
            bundle.isRead = true;
            keepFewItems();
            if (std::ranges::any_of(m_waits, [this](const Wait& wait) { return hasBeenRead(wait); }))
                m_read.notify_all();
        }
    }

    const BundleSurveyor& m_surveyor;
    std::mutex m_mutex;
    std::condition_variable_any m_read;  ///< a bundle
    std::condition_variable_any m_moved; ///< somebody, so that helpers may go on
    // Guarded by m_mutex.
    std::map<unsigned, Member> m_members;
    std::vector<Bundle> m_bundles; ///< stays as it is while there are helpers
    std::unordered_map<std::string, std::size_t> m_indexes;
    std::list<Wait> m_waits;
    std::size_t m_next = 0;      ///< the first that nobody reads or has read
    std::size_t m_firstKept = 0; ///< all before were passed by everybody
    std::size_t m_keptItems = 0;
    unsigned m_restingHelpers = 0;
    bool m_isOver = false;
    bool m_isFromDisk = false;
    bool m_wantsMoreHelpers = false;

    std::vector<std::jthread> m_helpers; ///< last: they use the rest
};

SharedSurveys::Part::Part(const BundleSurveyor& surveyor, std::shared_ptr<Shared> shared, InterestIn interest)
    : m_surveyor(surveyor), m_shared(std::move(shared)), m_interest(std::move(interest)),
      m_number(m_shared->join(m_interest)) {}

SharedSurveys::Part::Part(Part&&) noexcept = default;

SharedSurveys::Part::~Part() {
    if (m_shared && m_number)
        m_shared->leave(*m_number);
}

void SharedSurveys::Part::expect(const std::vector<std::string>& bundles) { m_shared->expect(bundles); }

BundleSurvey SharedSurveys::Part::surveyOf(const std::string& bundle, const std::stop_token& stop) {
    if (m_number) {
        if (auto survey = m_shared->take(*m_number, bundle, stop))
            return *std::move(survey);
    }
    return m_surveyor.survey(bundle, m_interest, stop);
}

SharedSurveys::Part SharedSurveys::takePart(InterestIn interest) {
    const std::lock_guard lock(m_mutex);
    if (auto shared = m_shared.lock()) {
        Part part(m_surveyor, std::move(shared), interest);
        if (part.m_number)
            return part;
    }
    auto shared = std::make_shared<Part::Shared>(m_surveyor);
    m_shared = shared;
    return Part(m_surveyor, std::move(shared), std::move(interest));
}

} // namespace sweeply
