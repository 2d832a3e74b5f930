#pragma once

#include <iosfwd>
#include <streambuf>
#include <string>

namespace sweeply {

/// While it lives, this is what std::cout writes to: standard output, in large pieces. A reader that goes away kills
/// nobody here, who may be in the middle of a removal. The first write that fails is noted and interrupts the run,
/// which then ends as cleanly as after any other interrupt. Main thread; one for a process.
class StandardOutput final : public std::streambuf {
  public:
    StandardOutput();
    ~StandardOutput() override;
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    /// The error number of the first write that failed; 0 so far.
    [[nodiscard]] int failure() const { return m_failure; }

  protected:
    int_type overflow(int_type character) override;
    int sync() override;

  private:
    std::string m_pending;
    std::streambuf* m_before;
    int m_failure = 0;
};

} // namespace sweeply
