#include "app/MakersServers.h"

#include "platform/HttpClient.h"
#include "platform/Localization.h"

#include <cstdlib>

namespace sweeply {

namespace {

constexpr const char* kFeed = "https://lists.sweeply.invalid/Sweeply/blacklist.rss";
constexpr const char* kReport = "https://updates.sweeply.invalid/blreport.php";
constexpr const char* kName = "Sweeply";

std::string fromEnvironment(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value && *value ? value : otherwise;
}

} // namespace

MakersServers makersServers(const SystemVersion& version, const std::vector<std::string>& languages) {
    std::string list;
    for (const auto& language : languages)
        list += (list.empty() ? "" : ",") + language;
    // "10.6.8" counts as 10.6.
    const std::string number = formatText("%3.2f", {std::strtod(version.productVersion().c_str(), nullptr)});
    return {fromEnvironment("SWEEPLY_FEED_URL", kFeed), fromEnvironment("SWEEPLY_REPORT_URL", kReport),
            formatText("Product=%@ Version=%@ MacOS=%@ Languages=%@ User=%@",
                       {kName, SWEEPLY_VERSION, number, percentEscaped(list), ""}),
            ReportedFacts{kName, SWEEPLY_VERSION, number}};
}

} // namespace sweeply
