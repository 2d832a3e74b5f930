// fetch [--agent TEXT] [--header LINE]... [--data FORM] [--limit BYTES] [--timeout SECONDS] URL
//
// Writes what an HTTP or HTTPS server answers to standard output, or one line to standard error. A program of its own:
// what a stranger's server sends is parsed in a process that can be killed and holds nothing of the user's.
#include "tools/Complaint.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <curl/curl.h>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Request {
    std::string url;
    std::string agent = "sweeply";
    std::vector<std::string> headers;
    std::string data;
    std::size_t limit = std::size_t{16} << 20U;
    long timeout = 60;
};

struct Sink {
    std::size_t left;
    bool isFull = false;
};

/// Takes part of the answer; anything but its whole length ends the transfer.
std::size_t writeAnswer(char* bytes, std::size_t size, std::size_t count, void* context) {
    auto& sink = *static_cast<Sink*>(context);
    const std::size_t length = size * count;
    if (length > sink.left) {
        sink.isFull = true;
        return 0;
    }
    sink.left -= length;
    return std::fwrite(bytes, 1, length, stdout);
}

/// The one scheme that the whole request may use: a redirection leads to no other.
std::string schemeOf(const std::string& url) {
    const auto end = url.find("://");
    std::string scheme = end == std::string::npos ? std::string() : url.substr(0, end);
    for (char& c : scheme)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    return scheme;
}

int complain(const Request& request, const std::string& reason) {
    return sweeply::printComplaint(request.url + ": " + reason);
}

int fetch(const Request& request) {
    const std::string scheme = schemeOf(request.url);
    if (scheme != "http" && scheme != "https")
        return complain(request, "neither http nor https");
    curl_global_init(CURL_GLOBAL_DEFAULT);
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    if (!curl)
        return complain(request, "out of memory");
    curl_slist* list = nullptr;
    for (const auto& header : request.headers)
        list = curl_slist_append(list, header.c_str());
    const std::unique_ptr<curl_slist, void (*)(curl_slist*)> headers(list, curl_slist_free_all);

    constexpr long kRedirections = 5;
    constexpr long kConnectSeconds = 15;
    Sink sink{request.limit};
    std::string reason(CURL_ERROR_SIZE, '\0');
    CURL* handle = curl.get();
    curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, scheme.c_str());
    curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, scheme.c_str());
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kRedirections);
    curl_easy_setopt(handle, CURLOPT_USERAGENT, request.agent.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT, request.timeout);
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, writeAnswer);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &sink);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, reason.data());
    if (!request.data.empty())
        curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.data.c_str());
    const CURLcode code = curl_easy_perform(handle);
    if (sink.isFull)
        return complain(request, "the answer is longer than " + std::to_string(request.limit) + " bytes");
    if (code != CURLE_OK)
        return complain(request, reason.front() != '\0' ? reason.c_str() : curl_easy_strerror(code));
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    if (status < 200 || status >= 300) // such as a redirection to nowhere
        return complain(request, "the server answered " + std::to_string(status));
    if (std::fflush(stdout) != 0)
        return complain(request, "standard output: could not be written");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    Request request;
    CLI::App app("Writes what an HTTP or HTTPS server answers to standard output.", "fetch");
    app.add_option("--agent", request.agent, "The user agent to send");
    app.add_option("--header", request.headers, "A header line to send")->allow_extra_args(false);
    app.add_option("--data", request.data, "An encoded form to post");
    app.add_option("--limit", request.limit, "Longest answer, in bytes");
    app.add_option("--timeout", request.timeout, "Longest time, in seconds")->check(CLI::Range(1, 3600));
    app.add_option("URL", request.url)->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return sweeply::printComplaint(std::string("fetch: ") + error.what());
    }
    return fetch(request);
}
