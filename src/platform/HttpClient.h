#pragma once

#include "platform/Error.h"

#include <chrono>
#include <cstddef>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace sweeply {

struct HttpRequest {
    std::string url; ///< http or https; redirections must keep the scheme
    std::string agent;
    std::vector<std::string> headers{};
    /// Fields of a form to post, not yet escaped. Empty: a plain GET.
    std::vector<std::pair<std::string, std::string>> form{};
    std::size_t limit = std::size_t{1} << 20U; ///< longest answer, in bytes
};

/// Talks to HTTP servers through the tool "fetch", a child process: nothing that a server sends is parsed in this one.
/// Certificates are verified. Thread-safe.
class HttpClient final {
  public:
    /// `fetchTool` is the host path of the tool; `timeout` is for one whole request.
    explicit HttpClient(std::string fetchTool, std::chrono::seconds timeout = std::chrono::seconds(60));

    /// The body of the answer. Blocks; a stop ends it at once. Anything but success, also a status such as 404, is an
    /// error whose reason names the address.
    [[nodiscard]] Result<std::string> fetch(const HttpRequest& request, const std::stop_token& stop = {}) const;

  private:
    std::string m_fetchTool;
    std::chrono::seconds m_timeout;
};

/// `text` as a part of an address or a form: all but letters, digits, "-", ".", "_" and "~" as "%XX".
[[nodiscard]] std::string percentEscaped(std::string_view text);

} // namespace sweeply
