#pragma once

#include "platform/Error.h"

#include <memory>
#include <string_view>

struct pcre2_real_code_8;

namespace sweeply {

/// Tells the applications that a user would want to see from the system's own, nested and foreign ones, by path alone.
/// Thread-safe.
class ApplicationFilter final {
  public:
    /// `homeLibrary` is the target user's Library folder, expanded.
    static Result<ApplicationFilter> compile(std::string_view homeLibrary);

    /// Is an application at `path` kept from the user?
    [[nodiscard]] bool matches(std::string_view path) const;

  private:
    struct Free {
        void operator()(pcre2_real_code_8* code) const;
    };
    using Code = std::unique_ptr<pcre2_real_code_8, Free>;

    explicit ApplicationFilter(Code code) : m_code(std::move(code)) {}

    Code m_code;
};

} // namespace sweeply
