#include "tools/SweeplyHelperTool/KnownNames.h"

#include "formats/PropertyList.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <utility>

namespace helper {

using namespace sweeply;

KnownNames::KnownNames(FileManager& files, std::string path) : m_files(files), m_path(std::move(path)) {
    if (m_files.createDirectoryAtPath(pathWithoutLastComponent(m_path))) {
        if (auto lock = FileLock::acquire(m_files, m_path))
            m_lock.emplace(*std::move(lock));
    }
    constexpr std::size_t kLargest = std::size_t{4} << 20U;
    const auto bytes = m_files.contentsAtPath(m_path, kLargest);
    const auto list = bytes ? plist::parse(*bytes) : tl::unexpected(bytes.error().reason);
    if (list) {
        m_isNew = false;
        m_names = plist::textsOf(*list);
        std::ranges::sort(m_names);
    }
}

bool KnownNames::contains(const std::string& name) const { return std::ranges::binary_search(m_names, name); }

Result<void> KnownNames::store(const std::vector<std::string>& names) {
    return m_files.writeAtomically(m_path, plist::writeXml(plist::arrayOf(names)));
}

} // namespace helper
