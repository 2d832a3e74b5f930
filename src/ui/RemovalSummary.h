#pragma once

#include "ui/RemovalDetails.h"

#include <string>
#include <vector>

namespace sweeply {

/// What is said of a removal before it begins: the figures at once, the rest when the details are there. Main thread.
class RemovalSummary final {
  public:
    /// `preview` is of now.
    explicit RemovalSummary(std::vector<PreviewedModule> preview);
    void setDetails(RemovalDetails details) { m_details = std::move(details); }

    [[nodiscard]] const std::vector<PreviewedModule>& preview() const { return m_preview; }
    [[nodiscard]] std::uint64_t count() const;
    [[nodiscard]] std::uint64_t size() const; ///< bytes
    /// Is nothing in it but caches and logs, which are made again by themselves?
    [[nodiscard]] bool isOfCachesAndLogsAlone() const;
    /// Is anything in it that nobody makes again?
    [[nodiscard]] bool hasWhatCannotBeMadeAgain() const;
    /// Is anything in it that a run can keep?
    [[nodiscard]] bool hasWhatCanBeKept() const;
    /// What could not be kept, each with the reason.
    [[nodiscard]] const std::vector<Error>& obstaclesToKeeping() const { return m_details.obstacles; }

    // `isKept`: will the run keep what it can?

    /// What is to be known beside the figures, in sentences. `days`: for how long a run keeps what it keeps.
    [[nodiscard]] std::vector<std::string> remarks(bool isKept, unsigned days) const;
    /// One for each module, with its items as soon as they are known.
    [[nodiscard]] std::vector<ListedSection> sections(bool isKept) const;

  private:
    [[nodiscard]] std::uint64_t countToKeep() const;
    [[nodiscard]] std::string noteOn(std::size_t module, bool isKept) const;

    std::vector<PreviewedModule> m_preview;
    std::vector<bool> m_cannotBeMadeAgain; ///< of each module: is anything in it so?
    RemovalDetails m_details;
};

} // namespace sweeply
