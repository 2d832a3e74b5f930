#pragma once

#include "platform/ItemIdentity.h"
#include "platform/UniqueFd.h"

#include <cstdint>
#include <functional>
#include <stop_token>
#include <string>

namespace sweeply {

/// `size` in whole blocks of `block` bytes.
[[nodiscard]] constexpr std::uint64_t roundedUp(std::uint64_t size, std::uint64_t block) {
    return (size + block - 1) / block * block;
}

/// Called with each folder below the one measured, by its path from there; by several threads at once.
using FolderMet = std::function<void(const std::string& path)>;

/// Does a walk go into what is mounted in the tree?
enum class Mounts { Enter, PassOver };

/// Adds up the sizes of everything below `folder`, each rounded up to whole blocks of `block` bytes, and notes what is
/// there. Folders count nothing, links their own size. What vanishes meanwhile is left out, and so is what cannot be
/// read, which makes the item not whole.
///
/// A big tree is read by several threads, more than there are processors: what the disk must fetch is asked for at
/// once. Memory is bounded whatever the tree's shape. Any number of threads may call this at once. A stop ends it at
/// once, with what was added up so far, which is not whole.
[[nodiscard]] MeasuredItem measureTree(UniqueFd folder, std::uint64_t block, const FolderMet& met = {},
                                       const std::stop_token& stop = {}, Mounts mounts = Mounts::Enter);

} // namespace sweeply
