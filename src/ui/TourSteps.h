#pragma once

#include <QString>
#include <cstdint>

namespace sweeply {

/// The steps of the guided tour: what to look at in a first scan, removal included. It goes on by itself once the
/// person has done what a step says.
class TourSteps final {
  public:
    enum class Step { Scan, Look, Uncheck, Remove, Done };

    /// The window as the person has made it.
    struct Seen {
        bool isRunning = false; ///< a scan or a removal
        std::uint64_t found = 0;
        std::uint64_t checked = 0; ///< bytes, like the others
        std::uint64_t freed = 0;
        bool isShowingModule = false;
    };

    [[nodiscard]] Step step() const { return m_step; }
    /// What to do now.
    [[nodiscard]] QString text() const;
    /// Goes on if that was done. True when it did.
    bool see(const Seen& seen);
    /// Goes on all the same.
    void skip();

  private:
    [[nodiscard]] bool isDone(const Seen& seen) const;

    Step m_step = Step::Scan;
    std::uint64_t m_checkedBefore = 0; ///< when the step began, as far as that was seen
    bool m_isNew = true;
};

} // namespace sweeply
