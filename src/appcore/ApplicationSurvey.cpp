#include "appcore/ApplicationSurvey.h"

#include "appcore/SWApplicationCore.h"
#include "appcore/sizes/DiskSizes.h"
#include "platform/BundleInfo.h"
#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <chrono>
#include <utility>

namespace sweeply {

namespace {

constexpr std::chrono::milliseconds kBetweenReports{100};
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

void readInfo(const FileManager& files, SurveyedApplication& application) {
    const auto info = infoOfBundle(files, application.path);
    if (!info)
        return;
    const auto text = [&](const char* key) {
        const auto* value = info->findString(key);
        return value ? *value : std::string();
    };
    application.identifier = text("CFBundleIdentifier");
    application.version = text("CFBundleShortVersionString");
    if (application.version.empty())
        application.version = text("CFBundleVersion");
}

void measure(const DiskSizes& sizes, SurveyedApplication& application, const std::stop_token& stop) {
    const auto item = sizes.measure(application.path, {}, stop);
    application.size = item.size;
    application.isSizeWhole = item.isWhole;
    application.changed = static_cast<std::time_t>(item.identity.newestChange / kNanosecondsPerSecond);
}

} // namespace

ApplicationSurvey::ApplicationSurvey(const SWApplicationCore& applications, std::string root,
                                     const SystemVersion& version, Listener listener)
    : m_applications(applications), m_root(std::move(root)), m_version(version), m_listener(std::move(listener)) {}

ApplicationSurvey::~ApplicationSurvey() = default;

void ApplicationSurvey::start() {
    m_thread = {}; // ends the one before
    m_thread = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

void ApplicationSurvey::setHeld(bool isHeld) {
    const std::lock_guard lock(m_mutex);
    m_isHeld = isHeld;
    if (isHeld)
        m_work.request_stop();
    else
        m_isReleased.notify_all();
}

bool ApplicationSurvey::waitWhileHeld(const std::stop_token& stop, std::stop_source& work) {
    std::unique_lock lock(m_mutex);
    if (!m_isReleased.wait(lock, stop, [this] { return !m_isHeld; }) || stop.stop_requested())
        return false;
    work = m_work = std::stop_source();
    return true;
}

void ApplicationSurvey::run(const std::stop_token& stop) {
    const auto paths = m_applications.applicationsOnceKnown(stop);
    std::stop_source unused;
    if (!waitWhileHeld(stop, unused))
        return;
    const auto files = FileManager::open(m_root);
    std::vector<SurveyedApplication> found;
    for (const auto& path : paths) {
        if (stop.stop_requested())
            return;
        if (files && (*files)->directoryExistsAtPath(path))
            found.push_back({path, std::string(nameWithoutExtension(path)), {}, {}, {}, true, 0});
    }
    m_listener.listed(found);
    if (!files)
        return;
    const DiskSizes sizes(**files, m_version);
    learn(found, stop, [&](auto& application, const auto&) { readInfo(**files, application); });
    learn(found, stop, [&](auto& application, const auto& work) { measure(sizes, application, work); });
}

void ApplicationSurvey::learn(std::vector<SurveyedApplication>& applications, const std::stop_token& stop,
                              const std::function<void(SurveyedApplication&, const std::stop_token&)>& look) {
    std::vector<SurveyedApplication> news;
    auto reported = std::chrono::steady_clock::now();
    for (auto& application : applications) {
        std::stop_source work;
        SurveyedApplication seen;
        do {
            if (!waitWhileHeld(stop, work))
                return;
            const std::stop_callback end(stop, [&work] { work.request_stop(); });
            seen = application;
            look(seen, work.get_token());
        } while (work.stop_requested());
        news.push_back(application = std::move(seen));
        if (const auto now = std::chrono::steady_clock::now(); now - reported >= kBetweenReports) {
            m_listener.learned(std::exchange(news, {}));
            reported = now;
        }
    }
    if (!news.empty())
        m_listener.learned(std::move(news));
}

} // namespace sweeply
