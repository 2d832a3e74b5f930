#include "platform/LaunchServices.h"

#include "formats/PropertyList.h"

namespace sweeply {

namespace {

constexpr std::size_t kLimit = std::size_t{64} << 20U;

} // namespace

RegisteredApplicationsFile::RegisteredApplicationsFile(const FileManager& files, std::string path)
    : m_files(files), m_path(std::move(path)) {}

Result<std::vector<std::string>> RegisteredApplicationsFile::copyAllApplicationURLs() const {
    const auto contents = m_files.contentsAtPath(m_path, kLimit);
    if (!contents)
        return Failure(contents.error());
    const auto value = plist::parse(*contents);
    if (!value)
        return Failure(Error{ErrorKind::Damaged, m_path, value.error()});
    const plist::Array* entries = value->asArray();
    if (entries == nullptr)
        return Failure(Error{ErrorKind::Damaged, m_path, "not a list of applications"});

    std::vector<std::string> paths;
    for (const plist::Value& entry : *entries) {
        // The file may be older than the removal of an application that it names.
        const std::string* path = entry.asString();
        if (path != nullptr && path->starts_with('/') && m_files.fileExistsAtPath(*path))
            paths.push_back(*path);
    }
    return paths;
}

} // namespace sweeply
