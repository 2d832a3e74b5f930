#if !defined(__linux__)

#include "platform/DirectoryReader.h"
#include "platform/EntryType.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace sweeply {

struct DirectoryReader::Stream {
    int directory;
    int errorNumber = 0;
    /// Entries passed: a position of one stream means nothing to another.
    Position position = kStart;
    DIR* stream = nullptr;

    explicit Stream(int directoryFd) : directory(directoryFd) {
        // A stream closes its descriptor, and ours is borrowed. Opened anew, because a duplicate would share its
        // position.
        const int own = ::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        stream = own < 0 ? nullptr : ::fdopendir(own);
        if (!stream) {
            errorNumber = errno;
            if (own >= 0)
                ::close(own);
        }
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        if (stream)
            ::closedir(stream);
    }

    const dirent* read() {
        if (!stream || errorNumber != 0)
            return nullptr;
        errno = 0;
        const dirent* entry = ::readdir(stream);
        if (entry)
            ++position;
        else
            errorNumber = errno;
        return entry;
    }
};

DirectoryReader::DirectoryReader(int directory, Position position) : m_stream(std::make_unique<Stream>(directory)) {
    while (m_stream->position < position && m_stream->read()) {
    }
}
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;
DirectoryReader::~DirectoryReader() = default;

std::optional<DirectoryReader::Entry> DirectoryReader::next() {
    while (const dirent* entry = m_stream->read()) {
        const char* name = static_cast<const char*>(entry->d_name);
        if (isDotOrDotDot(name))
            continue;
        if (const auto type = entryType(entry->d_type, m_stream->directory, name))
            return Entry{name, *type};
    }
    return std::nullopt;
}

int DirectoryReader::errorNumber() const { return m_stream->errorNumber; }

DirectoryReader::Position DirectoryReader::position() const { return m_stream->position; }

} // namespace sweeply

#endif
