#include "platform/ItemIdentity.h"

#include <functional>
#include <sys/stat.h>

namespace sweeply {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;

/// Spreads every bit of a number over all of them.
constexpr std::uint64_t mixed(std::uint64_t number) {
    number = (number ^ (number >> 30U)) * 0xbf58476d1ce4e5b9U;
    number = (number ^ (number >> 27U)) * 0x94d049bb133111ebU;
    return number ^ (number >> 31U);
}

} // namespace

ItemKind itemKindOf(mode_t mode) {
    if (S_ISREG(mode))
        return ItemKind::File;
    if (S_ISDIR(mode))
        return ItemKind::Folder;
    return S_ISLNK(mode) ? ItemKind::Link : ItemKind::Other;
}

void ItemIdentity::addEntry(std::string_view name, std::uint64_t size, timespec modified) {
    const std::int64_t time = modified.tv_sec * kNanoseconds + modified.tv_nsec;
    newestChange = std::max(newestChange, time);
    const auto parts = mixed(std::hash<std::string_view>()(name)) + mixed(size + 1) * 3;
    trace = static_cast<std::uint16_t>(trace + mixed(parts ^ static_cast<std::uint64_t>(time)));
    ++entries;
}

} // namespace sweeply
