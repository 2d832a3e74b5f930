#pragma once

#include "platform/FileAttributes.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace sweeply {

/// Reads the entries of one open folder in the file system's order, without "." and "..".
///
/// The kernel is asked for many entries at once, and for an entry's type only where the folder does not tell it. The
/// descriptor is borrowed: it must stay open while this reads, and its position is ours. Use by one thread at a time.
class DirectoryReader final {
  public:
    struct Entry {
        const char* name; ///< valid until the next call of next()
        FileType type;    ///< of the entry itself, links not followed
    };

    /// Where a reader stands, for going on with another descriptor of the same folder.
    using Position = std::int64_t;
    static constexpr Position kStart = 0;

    /// The descriptor is fresh: nothing was read through it before.
    explicit DirectoryReader(int directory, Position position = kStart);

    DirectoryReader(DirectoryReader&&) noexcept;
    DirectoryReader& operator=(DirectoryReader&&) noexcept;
    ~DirectoryReader();

    /// The next entry, or nothing at the end and after a failure. An entry that vanishes while its type is asked for is
    /// left out.
    std::optional<Entry> next();
    /// Why reading stopped, as errno gives it; 0 while there was no failure.
    [[nodiscard]] int errorNumber() const;
    /// Behind the entry that next() returned last.
    [[nodiscard]] Position position() const;

  private:
    struct Stream;
    std::unique_ptr<Stream> m_stream;
};

} // namespace sweeply
