#include "platform/ItemIdentity.h"

#include <array>
#include <cstddef>

namespace sweeply {

namespace {

constexpr std::uint64_t kNanoseconds = 1'000'000'000;

/// Spreads every bit of a number over all of them.
constexpr std::uint64_t mixed(std::uint64_t number) {
    number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27U)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31U);
}

/// The same on every machine, for what was seen on one may be compared on another.
std::uint64_t hashOf(std::string_view name) {
    std::uint64_t hash = name.size();
    while (!name.empty()) {
        const auto part = name.substr(0, sizeof hash);
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < part.size(); ++i)
            word |= std::uint64_t{static_cast<std::uint8_t>(part[i])} << (8 * i);
        hash = mixed(hash ^ word);
        name.remove_prefix(part.size());
    }
    return hash;
}

} // namespace

ItemKind itemKindOf(FileType type) {
    switch (type) {
    case FileType::Regular:
        return ItemKind::File;
    case FileType::Directory:
        return ItemKind::Folder;
    case FileType::SymbolicLink:
        return ItemKind::Link;
    case FileType::Other:
        break;
    }
    return ItemKind::Other;
}

std::string_view nameOf(ItemKind kind) {
    static constexpr std::array<std::string_view, 5> kNames{"none", "file", "folder", "link", "other"};
    return kNames.at(static_cast<std::size_t>(kind));
}

void ItemIdentity::addEntry(std::string_view name, std::uint64_t size, timespec modified) {
    // A stranger's time may be too large for this; then it is another number, and always the same.
    const auto time = static_cast<std::int64_t>(static_cast<std::uint64_t>(modified.tv_sec) * kNanoseconds +
                                                static_cast<std::uint64_t>(modified.tv_nsec));
    newestChange = std::max(newestChange, time);
    const auto parts = mixed(hashOf(name)) + mixed(size + 1) * 3;
    trace = static_cast<std::uint16_t>(trace + mixed(parts ^ static_cast<std::uint64_t>(time)));
    ++entries;
}

} // namespace sweeply
