#include "modules/languages/LocalizationLinks.h"

#include "platform/FileManager.h"
#include "platform/TargetPath.h"

#include <utility>

namespace sweeply {

void LocalizationLinks::add(const FileManager& files, const std::string& path) {
    if (auto neighbour = neighbourOf(files, path); !neighbour.empty())
        m_neighbours.emplace(path, std::move(neighbour));
}

const std::string& LocalizationLinks::endOf(const std::string& path) const {
    const std::string* end = &path;
    for (std::size_t steps = 0; steps <= m_neighbours.size(); ++steps) { // links may lead in a circle
        const auto next = m_neighbours.find(*end);
        if (next == m_neighbours.end())
            break;
        end = &next->second;
    }
    return *end;
}

std::string LocalizationLinks::neighbourOf(const FileManager& files, std::string_view path) {
    const auto destination = files.destinationOfSymbolicLinkAtPath(path);
    const std::string name = destination ? normalisedPath(*destination) : std::string();
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos)
        return {};
    return joinedPath(pathWithoutLastComponent(path), name);
}

} // namespace sweeply
