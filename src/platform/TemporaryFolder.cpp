#include "platform/TemporaryFolder.h"

#include "platform/TreeRemover.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <utility>

namespace sweeply {

Result<TemporaryFolder> TemporaryFolder::make() {
    std::error_code error;
    const auto base = std::filesystem::temp_directory_path(error);
    if (error)
        return Failure(systemError(error.value(), "$TMPDIR"));
    std::string path = std::filesystem::absolute(base / "sweeply.XXXXXX").string();
    if (!::mkdtemp(path.data()))
        return Failure(systemError(errno, path));
    return TemporaryFolder(std::move(path));
}

TemporaryFolder::TemporaryFolder(TemporaryFolder&& other) noexcept : m_path(std::exchange(other.m_path, {})) {}

TemporaryFolder::~TemporaryFolder() {
    if (m_path.empty())
        return;
    const std::filesystem::path path(m_path);
    const UniqueFd parent(::open(path.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (parent)
        (void)removeTree(parent.get(), path.filename().string()); // the system clears its folder in time
}

} // namespace sweeply
