#pragma once

#include "platform/FileAttributes.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <string_view>
#include <sys/types.h>

namespace sweeply {

enum class ItemKind : std::uint8_t { None, File, Folder, Link, Other };

[[nodiscard]] ItemKind itemKindOf(FileType type);
/// "file" and so on: the words of scripts, which never change.
[[nodiscard]] std::string_view nameOf(ItemKind kind);

/// What an item was when somebody looked at it, so that a later look can tell whether it still is that: its kind, how
/// many entries it is, when anything of it last changed, and a trace of every entry's name, size and time. Two words,
/// because every entry of every list holds one.
///
/// The same look gives the same on every machine.
///
/// Made of what the walk for an item's size sees anyway. Times are those of files' contents: what only gets other
/// rights or another name elsewhere has not changed, and a folder is what is in it.
struct ItemIdentity {
    std::int64_t newestChange = 0; ///< of any file of it, in nanoseconds since 1970
    std::uint32_t entries = 0;     ///< itself and all below
    std::uint16_t trace = 0;
    ItemKind kind = ItemKind::None; ///< None where nobody looked

    /// Takes in one more entry; a folder has a name alone.
    void addEntry(std::string_view name, std::uint64_t size = 0, timespec modified = {});
    /// Takes in another item, or another part of this one. The order makes no difference; the kind stays.
    ItemIdentity& operator+=(const ItemIdentity& other) {
        newestChange = std::max(newestChange, other.newestChange);
        trace = static_cast<std::uint16_t>(trace + other.trace);
        entries += other.entries;
        return *this;
    }
    [[nodiscard]] bool isKnown() const { return kind != ItemKind::None; }
    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;
};
static_assert(sizeof(ItemIdentity) == 16);

/// An item's size, and what it was when that was taken.
struct MeasuredItem {
    std::uint64_t size = 0; ///< bytes, each file in whole blocks
    ItemIdentity identity = {};
    bool isWhole = true; ///< false where a part of it could not be read

    MeasuredItem& operator+=(const MeasuredItem& other) {
        size += other.size;
        identity += other.identity;
        isWhole = isWhole && other.isWhole;
        return *this;
    }
    friend bool operator==(const MeasuredItem&, const MeasuredItem&) = default;
};

} // namespace sweeply
