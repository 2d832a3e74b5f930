#include "formats/FlatPackage.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <memory>

namespace sweeply {

namespace {

using Flaw = tl::unexpected<std::string>;
using Archive = std::unique_ptr<archive, int (*)(archive*)>;

std::string reasonOf(archive* archive) {
    const char* text = archive_error_string(archive);
    return text ? text : "the archive is damaged";
}

tl::expected<std::string, std::string> contentsOfMember(archive* archive, std::size_t limit) {
    std::string bytes;
    std::array<char, 64 * 1024> buffer;
    while (true) {
        const la_ssize_t length = archive_read_data(archive, buffer.data(), buffer.size());
        if (length < 0)
            return Flaw(reasonOf(archive));
        if (length == 0)
            return bytes;
        bytes.append(buffer.data(), static_cast<std::size_t>(length));
        if (bytes.size() > limit)
            return Flaw("a member is larger than it may be");
    }
}

} // namespace

tl::expected<void, std::string> readFlatPackage(int file, const std::function<bool(std::string_view)>& isWanted,
                                                const std::function<void(std::string_view, std::string)>& take,
                                                const FlatPackageLimits& limits) {
    constexpr std::size_t kBlock = 64 * 1024;
    const Archive archive(archive_read_new(), archive_read_free);
    if (!archive || archive_read_support_format_xar(archive.get()) != ARCHIVE_OK)
        return Flaw("such archives cannot be read here");
    if (archive_read_open_fd(archive.get(), file, kBlock) != ARCHIVE_OK)
        return Flaw(reasonOf(archive.get()));
    std::size_t total = 0;
    for (std::size_t members = 0;; ++members) {
        archive_entry* entry = nullptr;
        const int status = archive_read_next_header(archive.get(), &entry);
        if (status == ARCHIVE_EOF)
            return {};
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            return Flaw(reasonOf(archive.get()));
        if (members >= limits.members)
            return Flaw("it has more members than it may");
        const char* path = archive_entry_pathname(entry);
        if (!path || archive_entry_filetype(entry) != AE_IFREG || !isWanted(path))
            continue;
        const std::string name(path);
        auto bytes = contentsOfMember(archive.get(), std::min(limits.memberSize, limits.totalSize - total));
        if (!bytes)
            return Flaw(bytes.error());
        total += bytes->size();
        take(name, *std::move(bytes));
    }
}

} // namespace sweeply
