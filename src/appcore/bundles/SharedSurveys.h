#pragma once

#include "appcore/bundles/BundleSurvey.h"

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace sweeply {

/// Lets those who look into the same bundles at the same time share one walk through each: helpers walk ahead of them,
/// as many as the processors or the disk keep busy. Everybody gets what he would have found alone, and looks alone
/// where nobody has looked for him. Thread-safe.
class SharedSurveys final {
  public:
    /// Both outlive this.
    SharedSurveys(const FileManager& files, const DiskSizes& sizes) : m_surveyor(files, sizes) {}

    /// Somebody who takes part, until this goes. For one thread.
    class Part final {
      public:
        Part(Part&&) noexcept;
        Part& operator=(Part&&) = delete;
        ~Part();

        /// Announces the bundles that surveyOf() will be called for, in this order. He may leave out some and be away
        /// for long.
        void expect(const std::vector<std::string>& bundles);
        /// What he wants to know of the bundle; nothing where `stop` is asked for.
        [[nodiscard]] BundleSurvey surveyOf(const std::string& bundle, const std::stop_token& stop);

      private:
        friend SharedSurveys;
        struct Shared;
        Part(const BundleSurveyor& surveyor, std::shared_ptr<Shared> shared, InterestIn interest);

        const BundleSurveyor& m_surveyor;
        std::shared_ptr<Shared> m_shared; ///< with all who take part now
        InterestIn m_interest;
        std::optional<unsigned> m_number; ///< among them; none for who is alone
    };
    [[nodiscard]] Part takePart(InterestIn interest);

  private:
    const BundleSurveyor m_surveyor;
    std::mutex m_mutex;
    std::weak_ptr<Part::Shared> m_shared; ///< guarded by m_mutex
};

} // namespace sweeply
