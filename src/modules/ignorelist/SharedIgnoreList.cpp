#include "modules/ignorelist/SharedIgnoreList.h"

#include "appcore/SWVersionComparator.h"
#include "formats/PropertyList.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <utility>

namespace sweeply {

namespace {

constexpr std::size_t kLongestList = std::size_t{4} << 20U;
constexpr const char* kSetAside = ".bak";
constexpr const char* kNew = ".new";

Result<Blacklist> readBlacklist(const FileManager& files, const std::string& path) {
    const auto bytes = files.contentsAtPath(path, kLongestList);
    if (!bytes)
        return Failure(bytes.error());
    auto list = parseBlacklist(*bytes);
    if (!list)
        return Failure(Error{list.error().kind, path, list.error().reason});
    return list;
}

} // namespace

Result<Blacklist> parseBlacklist(std::string_view bytes) {
    const auto value = plist::parse(bytes);
    if (!value)
        return Failure(Error{ErrorKind::Damaged, {}, value.error()});
    if (!value->asDictionary())
        return Failure(Error{ErrorKind::Damaged, {}, "no list of applications"});
    Blacklist list;
    if (const auto* identifiers = value->find("BRblacklist"))
        list.identifiers = plist::textsOf(*identifiers);
    if (const auto* version = value->findString("Version"))
        list.version = *version;
    return list;
}

SharedIgnoreList::SharedIgnoreList(FileManager& files, std::string shippedFile, std::string installedFile,
                                   SystemLog& log)
    : m_files(files), m_shippedFile(std::move(shippedFile)), m_installedFile(std::move(installedFile)), m_log(log) {}

void SharedIgnoreList::finishReplacement() {
    const std::string aside = m_installedFile + kSetAside;
    (void)m_files.removeItemAtPath(m_installedFile + kNew); // mostly not there
    if (!m_files.attributesOfItemAtPath(aside, Links::DontFollow))
        return;
    // The new one is only ever renamed to its place whole.
    const auto done = readBlacklist(m_files, m_installedFile) ? m_files.removeItemAtPath(aside)
                                                              : m_files.moveItemAtPath(aside, m_installedFile);
    if (!done)
        m_log.log(done.error().message());
}

Blacklist SharedIgnoreList::readShipped() const {
    const auto host = FileManager::open("/");
    const auto list = host ? readBlacklist(**host, m_shippedFile) : Result<Blacklist>(Failure(host.error()));
    if (list)
        return *list;
    m_log.log(list.error().message());
    return {};
}

Blacklist SharedIgnoreList::readInstalled() const {
    auto list = readBlacklist(m_files, m_installedFile);
    if (list)
        return *std::move(list);
    if (list.error().kind != ErrorKind::NotFound)
        m_log.log(list.error().message());
    return {};
}

void SharedIgnoreList::load() {
    {
        const std::lock_guard lock(m_fileMutex);
        finishReplacement();
    }
    Blacklist list = readShipped();
    if (Blacklist installed = readInstalled(); SWVersionComparator::compareVersion(list.version, installed.version) < 0)
        list = std::move(installed);
    std::ranges::sort(list.identifiers);
    const std::lock_guard lock(m_mutex);
    m_list = std::move(list);
}

bool SharedIgnoreList::contains(std::string_view identifier) const {
    const std::lock_guard lock(m_mutex);
    return std::ranges::binary_search(m_list.identifiers, identifier);
}

std::string SharedIgnoreList::version() const {
    const std::lock_guard lock(m_mutex);
    return m_list.version;
}

Result<void> SharedIgnoreList::install(std::string_view bytes, const std::function<void(Step)>& reached) {
    {
        const std::lock_guard lock(m_fileMutex);
        const std::string fresh = m_installedFile + kNew;
        const std::string aside = m_installedFile + kSetAside;
        if (auto made = m_files.createDirectoryAtPath(pathWithoutLastComponent(m_installedFile)); !made)
            return made;
        finishReplacement();
        if (auto written = m_files.writeAtomically(fresh, bytes); !written)
            return written;
        reached(Step::Written);
        const bool hadOne = m_files.attributesOfItemAtPath(m_installedFile, Links::DontFollow).has_value();
        if (hadOne) {
            if (auto moved = m_files.moveItemAtPath(m_installedFile, aside); !moved)
                return moved;
        }
        reached(Step::OldSetAside);
        if (auto moved = m_files.moveItemAtPath(fresh, m_installedFile); !moved) {
            finishReplacement();
            return moved;
        }
        reached(Step::Replaced);
        if (hadOne)
            (void)m_files.removeItemAtPath(aside); // the next load() tries again
        reached(Step::Done);
    }
    load();
    return {};
}

} // namespace sweeply
