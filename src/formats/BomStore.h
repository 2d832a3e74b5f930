#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sweeply::bom {

inline constexpr std::string_view kStoreMagic = "BOMStore";
inline constexpr std::uint32_t kStoreVersion = 1;
inline constexpr std::uint32_t kStoreHeaderSize = 512;
inline constexpr std::string_view kTreeMagic = "tree";

/// The container of a bill of materials: numbered blocks of bytes, some of which have names, and trees of pairs of
/// block numbers made of them. Block 0 means "none".
class StoreWriter final {
  public:
    using BlockNumber = std::uint32_t;
    using Pair = std::pair<BlockNumber, BlockNumber>;

    BlockNumber addBlock(std::string bytes);
    void nameBlock(std::string_view name, BlockNumber block) { m_names.emplace_back(name, block); }
    /// A tree whose leaves hold `pairs` in their order; the block that describes it. `nodeSize` is what a reader should
    /// set aside for a node, in bytes.
    BlockNumber addTree(const std::vector<Pair>& pairs, std::uint32_t nodeSize);

    /// The whole file.
    [[nodiscard]] std::string finish() const;

  private:
    /// Nodes of one level, each with the last value of what it stands for.
    std::vector<Pair> addLevel(const std::vector<Pair>& pairs, bool isLeaf);

    std::vector<std::string> m_blocks; ///< number 1 first
    std::vector<std::pair<std::string, BlockNumber>> m_names;
};

} // namespace sweeply::bom
