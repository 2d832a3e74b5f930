#if defined(__linux__)

#include "platform/DirectoryReader.h"
#include "platform/EntryType.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <unistd.h>
#include <utility>
#include <vector>

namespace sweeply {

namespace {

/// Bigger ones measured no faster. Pages that a small folder does not fill are never touched.
constexpr std::size_t kBufferSize = 32 * 1024;
/// Of a walk's levels, so many buffers are used again for the next folders.
constexpr std::size_t kSpareBuffers = 4;

struct Buffer {
    // Not an aggregate on purpose: making one must not clear it.
    Buffer() {} // NOLINT(modernize-use-equals-default)
    alignas(dirent64) std::array<char, kBufferSize> bytes;
};

thread_local std::vector<std::unique_ptr<Buffer>> spareBuffers;

std::unique_ptr<Buffer> takeBuffer() {
    if (spareBuffers.empty())
        return std::make_unique<Buffer>();
    auto buffer = std::move(spareBuffers.back());
    spareBuffers.pop_back();
    return buffer;
}

void giveBack(std::unique_ptr<Buffer> buffer) {
    if (spareBuffers.size() < kSpareBuffers)
        spareBuffers.push_back(std::move(buffer));
}

} // namespace

struct DirectoryReader::Stream {
    int directory;
    int errorNumber = 0;
    Position position;
    std::size_t at = 0;
    std::size_t end = 0;
    std::unique_ptr<Buffer> buffer = takeBuffer();

    Stream(int directoryFd, Position start) : directory(directoryFd), position(start) {
        if (position != kStart && ::lseek(directory, position, SEEK_SET) < 0)
            errorNumber = errno;
    }

    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() { giveBack(std::move(buffer)); }

    bool fill() {
        if (errorNumber != 0)
            return false;
        const ssize_t length = ::getdents64(directory, buffer->bytes.data(), buffer->bytes.size());
        // ENOENT: the folder itself was removed behind our back, so it has no entries.
        if (length < 0 && errno != ENOENT)
            errorNumber = errno;
        at = 0;
        end = length > 0 ? static_cast<std::size_t>(length) : 0;
        return end > 0;
    }
};

DirectoryReader::DirectoryReader(int directory, Position position)
    : m_stream(std::make_unique<Stream>(directory, position)) {}
DirectoryReader::DirectoryReader(DirectoryReader&&) noexcept = default;
DirectoryReader& DirectoryReader::operator=(DirectoryReader&&) noexcept = default;
DirectoryReader::~DirectoryReader() = default;

std::optional<DirectoryReader::Entry> DirectoryReader::next() {
    Stream& stream = *m_stream;
    while (stream.at < stream.end || stream.fill()) {
        const auto* entry = reinterpret_cast<const dirent64*>(stream.buffer->bytes.data() + stream.at);
        stream.at += entry->d_reclen;
        stream.position = entry->d_off;
        const char* name = static_cast<const char*>(entry->d_name);
        if (isDotOrDotDot(name))
            continue;
        if (const auto type = entryType(entry->d_type, stream.directory, name))
            return Entry{name, *type};
    }
    return std::nullopt;
}

int DirectoryReader::errorNumber() const { return m_stream->errorNumber; }

DirectoryReader::Position DirectoryReader::position() const { return m_stream->position; }

} // namespace sweeply

#endif
