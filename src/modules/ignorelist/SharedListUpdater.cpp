#include "modules/ignorelist/SharedListUpdater.h"

#include "appcore/SWVersionComparator.h"
#include "formats/RssFeed.h"
#include "modules/ignorelist/ListArchive.h"
#include "platform/Localization.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

namespace {

constexpr std::size_t kLongestFeed = std::size_t{1} << 20U;
constexpr std::size_t kLargestArchive = std::size_t{8} << 20U;

SharedListUpdater::Step stepAfter(SharedIgnoreList::Step step) {
    switch (step) {
    case SharedIgnoreList::Step::Written:
        return SharedListUpdater::Step::Written;
    case SharedIgnoreList::Step::OldSetAside:
        return SharedListUpdater::Step::OldSetAside;
    case SharedIgnoreList::Step::Replaced:
        return SharedListUpdater::Step::Replaced;
    case SharedIgnoreList::Step::Done:
        break;
    }
    return SharedListUpdater::Step::Done;
}

/// What the address calls the file: its last component, without what a server is asked beside it.
std::string_view fileNameOf(std::string_view url) { return lastPathComponent(url.substr(0, url.find_first_of("?#"))); }

} // namespace

SharedListUpdater::SharedListUpdater(SharedIgnoreList& list, const HttpClient& http, const ToolTable& tools,
                                     SystemLog& log, std::function<void(Step)> reached)
    : m_list(list), m_http(http), m_tools(tools), m_log(log), m_reached(std::move(reached)) {}

UpdateReport SharedListUpdater::fail(const Error& error) {
    m_log.log(formatText("Error ocures while geting global black list: %@", {error.message()}));
    return {};
}

UpdateReport SharedListUpdater::update(const std::string& feedAddress, const std::string& agent,
                                       const std::stop_token& stop) {
    const auto bytes = m_http.fetch({.url = feedAddress, .agent = agent, .limit = kLongestFeed}, stop);
    if (!bytes)
        return fail(bytes.error());
    const auto items = parseRssFeed(*bytes);
    if (!items)
        return fail({ErrorKind::Damaged, feedAddress, items.error()});
    if (items->empty())
        return fail({ErrorKind::Damaged, feedAddress, "no item in the feed"});
    const auto& newest = items->front();
    if (SWVersionComparator::compareVersion(m_list.version(), newest.enclosureAttribute("blacklist:version")) >= 0)
        return {UpdateOutcome::AlreadyLatest};
    return downloadAndInstallBlacklistWithURL(std::string(newest.enclosureAttribute("url")), agent, stop);
}

UpdateReport SharedListUpdater::downloadAndInstallBlacklistWithURL(const std::string& url, const std::string& agent,
                                                                   const std::stop_token& stop) {
    const auto archive = m_http.fetch({.url = url, .agent = agent, .limit = kLargestArchive}, stop);
    if (!archive) {
        auto result = fail(archive.error());
        result.downloadError = archive.error().message();
        return result;
    }
    m_reached(Step::Downloaded);
    const auto bytes = fileFromArchive(m_tools, *archive, fileNameOf(url), SharedIgnoreList::kFileName, stop);
    if (!bytes)
        return fail(bytes.error());
    m_reached(Step::Unpacked);
    return {install(*bytes)};
}

UpdateOutcome SharedListUpdater::install(const std::string& bytes) {
    const auto downloaded = parseBlacklist(bytes);
    if (!downloaded)
        return fail(downloaded.error()).outcome;
    if (SWVersionComparator::compareVersion(m_list.version(), downloaded->version) >= 0) {
        m_log.log("Same or older version of blacklist was download and update didn't succeeded (strange)");
        return UpdateOutcome::AlreadyLatest;
    }
    const auto installed = m_list.install(bytes, [this](auto step) { m_reached(stepAfter(step)); });
    if (!installed) {
        m_log.log("Did not succeeded in blacklist update have some problems with permissions");
        m_log.log(installed.error().message());
        return UpdateOutcome::Error;
    }
    m_log.log("Sucseeded in blacklist update");
    return UpdateOutcome::Installed;
}

} // namespace sweeply
