#include "platform/DirectoryEnumerator.h"

#include "platform/DirectoryReader.h"
#include "platform/FileStatus.h"
#include "platform/TargetPath.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <utility>
#include <vector>

namespace sweeply {

namespace {

/// So many folders are open at once; in a deeper tree the upper ones are closed and found again by "..", so that no
/// depth runs into the process's limit of descriptors.
constexpr std::size_t kOpenLevels = 32;

} // namespace

struct DirectoryEnumerator::State {
    struct Level {
        UniqueFd fd;
        std::optional<DirectoryReader> reader; ///< absent while the folder is closed
        std::size_t pathLength;                ///< of the folder's own path
        DirectoryReader::Position position = DirectoryReader::kStart;
        dev_t device = 0;
        ino_t inode = 0;
    };

    std::vector<Level> levels;
    std::size_t closedLevels = 0; ///< the first so many of them
    std::string path;             ///< of the entry just returned
    std::size_t nameOffset = 0;
    bool entersNext = false;
    std::optional<Error> failure;
    ReadProblems* problems = nullptr; ///< null where nobody wants to know
    std::string folderPath;           ///< of the folder walked; for the problems
    std::vector<std::string> leftOut;

    void fail(int errorNumber, std::size_t pathLength) {
        auto error = systemError(errorNumber, path.substr(0, pathLength));
        tell(error);
        if (!failure)
            failure = std::move(error);
    }

    void tell(const Error& error) const {
        if (problems)
            problems->addFailure(
                {error.kind, error.path.empty() ? folderPath : joinedPath(folderPath, error.path), error.reason});
    }

    /// About the entry just returned.
    [[nodiscard]] Failure unreadable(int errorNumber) const {
        tell(systemError(errorNumber, path.substr(0, isClosedToUs() ? levels.back().pathLength : path.size())));
        return Failure(systemError(errorNumber, path));
    }

    /// Does the folder that holds the entry show names and nothing else?
    [[nodiscard]] bool isClosedToUs() const {
        struct stat status {};
        return ::fstatat(levels.back().fd.get(), path.c_str() + nameOffset, &status, AT_SYMLINK_NOFOLLOW) != 0 &&
               errno == EACCES;
    }

    void push(UniqueFd fd) {
        const int directory = fd.get();
        levels.push_back({std::move(fd), DirectoryReader(directory), path.size()});
        if (levels.size() - closedLevels > kOpenLevels)
            closeUppermost();
    }

    void closeUppermost() {
        Level& level = levels[closedLevels];
        struct stat status {};
        if (::fstat(level.fd.get(), &status) != 0)
            return;
        level.device = status.st_dev;
        level.inode = status.st_ino;
        level.position = level.reader->position();
        level.reader.reset();
        level.fd.reset();
        ++closedLevels;
    }

    /// Leaves the lowest folder. The one above it is opened again if it was closed; if it cannot be found, because
    /// somebody moved the lower one elsewhere meanwhile, the walk ends there.
    void pop() {
        const UniqueFd left = std::move(levels.back().fd);
        levels.pop_back();
        if (levels.empty() || levels.back().reader)
            return;
        Level& level = levels.back();
        UniqueFd fd(::openat(left.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status {};
        if (!fd || ::fstat(fd.get(), &status) != 0 || status.st_dev != level.device || status.st_ino != level.inode) {
            fail(fd ? ESTALE : errno, level.pathLength);
            levels.clear();
            return;
        }
        level.reader.emplace(fd.get(), level.position);
        level.fd = std::move(fd);
        --closedLevels;
    }

    void enter() {
        UniqueFd fd(::openat(levels.back().fd.get(), path.c_str() + nameOffset,
                             O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (fd)
            return push(std::move(fd));
        const int errorNumber = errno;
        if (errorNumber == ENOENT || errorNumber == ENOTDIR || errorNumber == ELOOP)
            return; // removed or replaced since it was listed
        fail(errorNumber, isClosedToUs() ? levels.back().pathLength : path.size());
    }
};

DirectoryEnumerator::DirectoryEnumerator(Result<UniqueFd> directory, ReadProblems* problems, std::string path)
    : m_state(std::make_unique<State>()) {
    m_state->problems = problems;
    m_state->folderPath = std::move(path);
    if (directory)
        m_state->push(std::move(*directory));
    else
        m_state->failure = directory.error();
}
DirectoryEnumerator::DirectoryEnumerator(DirectoryEnumerator&&) noexcept = default;
DirectoryEnumerator& DirectoryEnumerator::operator=(DirectoryEnumerator&&) noexcept = default;
DirectoryEnumerator::~DirectoryEnumerator() = default;

std::optional<DirectoryEnumerator::Entry> DirectoryEnumerator::next() {
    State& state = *m_state;
    if (std::exchange(state.entersNext, false))
        state.enter();
    while (!state.levels.empty()) {
        State::Level& level = state.levels.back();
        const auto entry = level.reader->next();
        state.path.resize(level.pathLength);
        if (!entry) {
            if (level.reader->errorNumber() != 0)
                state.fail(level.reader->errorNumber(), level.pathLength);
            state.pop();
            continue;
        }
        if (level.pathLength > 0)
            state.path += '/';
        state.nameOffset = state.path.size();
        state.path += entry->name;
        if (std::ranges::find(state.leftOut, state.path) != state.leftOut.end())
            continue;
        state.entersNext = entry->type == FileType::Directory;
        return Entry{state.path, entry->type, static_cast<int>(state.levels.size()) - 1};
    }
    return std::nullopt;
}

void DirectoryEnumerator::leaveOut(std::string path) { m_state->leftOut.push_back(std::move(path)); }

void DirectoryEnumerator::skipDescendants() { m_state->entersNext = false; }

Result<FileAttributes> DirectoryEnumerator::attributes() const {
    const State& state = *m_state;
    struct stat status {};
    if (state.levels.empty())
        return Failure(systemError(ENOENT, state.path));
    if (::fstatat(state.levels.back().fd.get(), state.path.c_str() + state.nameOffset, &status, AT_SYMLINK_NOFOLLOW) !=
        0)
        return state.unreadable(errno);
    return attributesFrom(status);
}

int DirectoryEnumerator::folder() const { return m_state->levels.empty() ? -1 : m_state->levels.back().fd.get(); }

std::string DirectoryEnumerator::name() const { return m_state->path.substr(m_state->nameOffset); }

const std::optional<Error>& DirectoryEnumerator::failure() const { return m_state->failure; }

} // namespace sweeply
