#include "platform/HttpClient.h"

#include "platform/Process.h"

namespace sweeply {

namespace {

/// The kernel takes no longer argument.
constexpr std::size_t kLongestForm = std::size_t{120} << 10U;

} // namespace

std::string percentEscaped(std::string_view text) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string escaped;
    for (const char c : text) {
        if (kPlain.find(c) != std::string_view::npos) {
            escaped += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        escaped += {'%', kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return escaped;
}

HttpClient::HttpClient(std::string fetchTool, std::chrono::seconds timeout)
    : m_fetchTool(std::move(fetchTool)), m_timeout(timeout) {}

Result<std::string> HttpClient::fetch(const HttpRequest& request, const std::stop_token& stop) const {
    std::vector<std::string> arguments{"--agent",   request.agent,
                                       "--limit",   std::to_string(request.limit),
                                       "--timeout", std::to_string(m_timeout.count())};
    for (const auto& header : request.headers)
        arguments.insert(arguments.end(), {"--header", header});
    std::string form;
    for (const auto& [name, value] : request.form)
        form += (form.empty() ? "" : "&") + percentEscaped(name) + "=" + percentEscaped(value);
    if (form.size() > kLongestForm)
        return Failure(Error{ErrorKind::TooLarge, request.url, "too much to send"});
    if (!form.empty())
        arguments.insert(arguments.end(), {"--data", form});
    arguments.insert(arguments.end(), {"--", request.url});

    ProcessOptions options;
    options.errors = OutputTo::Capture;
    options.captureLimit = request.limit + 4096;
    options.stop = stop;
    auto answer = runProcess(m_fetchTool, arguments, options);
    if (!answer)
        return Failure(answer.error());
    if (answer->succeeded())
        return std::move(answer->output);
    while (answer->errors.ends_with('\n'))
        answer->errors.pop_back();
    return Failure(Error{ErrorKind::Unavailable, {}, answer->errors.empty() ? "fetch failed" : answer->errors});
}

} // namespace sweeply
