#include "formats/BomStore.h"

#include "formats/ByteWriter.h"

#include <algorithm>
#include <bit>

namespace sweeply::bom {

namespace {

constexpr std::size_t kPairsInNode = 256;

} // namespace

StoreWriter::BlockNumber StoreWriter::addBlock(std::string bytes) {
    m_blocks.push_back(std::move(bytes));
    return static_cast<BlockNumber>(m_blocks.size());
}

std::vector<StoreWriter::Pair> StoreWriter::addLevel(const std::vector<Pair>& pairs, bool isLeaf) {
    std::vector<Pair> nodes;
    const auto first = static_cast<BlockNumber>(m_blocks.size() + 1);
    const std::size_t count = std::max<std::size_t>(1, (pairs.size() + kPairsInNode - 1) / kPairsInNode);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t begin = i * kPairsInNode;
        const std::size_t end = std::min(pairs.size(), begin + kPairsInNode);
        const auto self = static_cast<BlockNumber>(first + i);
        ByteWriter node(std::endian::big);
        node.u16(isLeaf ? 1 : 0);
        node.u16(static_cast<std::uint16_t>(end - begin));
        // Only leaves are chained: they alone are walked from one to the next.
        node.u32(isLeaf && i + 1 < count ? self + 1 : 0);
        node.u32(isLeaf && i > 0 ? self - 1 : 0);
        for (std::size_t k = begin; k < end; ++k) {
            node.u32(pairs[k].first);
            node.u32(pairs[k].second);
        }
        nodes.emplace_back(addBlock(node.take()), end > begin ? pairs[end - 1].second : 0);
    }
    return nodes;
}

StoreWriter::BlockNumber StoreWriter::addTree(const std::vector<Pair>& pairs, std::uint32_t nodeSize) {
    std::vector<Pair> nodes = addLevel(pairs, true);
    while (nodes.size() > 1)
        nodes = addLevel(nodes, false);
    ByteWriter tree(std::endian::big);
    tree.bytes(kTreeMagic);
    tree.u32(1);
    tree.u32(nodes.front().first);
    tree.u32(nodeSize);
    tree.u32(static_cast<std::uint32_t>(pairs.size()));
    tree.u8(0);
    return addBlock(tree.take());
}

std::string StoreWriter::finish() const {
    ByteWriter names(std::endian::big);
    names.u32(static_cast<std::uint32_t>(m_names.size()));
    for (const auto& [name, block] : m_names) {
        names.u32(block);
        names.u8(static_cast<std::uint8_t>(name.size()));
        names.bytes(name);
    }
    const std::string namesBytes = names.take();
    const auto blockCount = static_cast<std::uint32_t>(m_blocks.size());
    const auto namesSize = static_cast<std::uint32_t>(namesBytes.size());

    ByteWriter index(std::endian::big);
    index.u32(blockCount + 1);
    index.u64(0); // block 0
    std::uint32_t address = kStoreHeaderSize + namesSize;
    for (const std::string& block : m_blocks) {
        const auto size = static_cast<std::uint32_t>(block.size());
        index.u32(address);
        index.u32(size);
        address += size;
    }
    index.u32(0); // free list: empty, but readers expect room for two ranges
    index.u64(0);
    index.u64(0);
    const std::string indexBytes = index.take();

    ByteWriter file(std::endian::big);
    file.bytes(kStoreMagic);
    file.u32(kStoreVersion);
    file.u32(blockCount);
    file.u32(address); // the index ends the file
    file.u32(static_cast<std::uint32_t>(indexBytes.size()));
    file.u32(kStoreHeaderSize);
    file.u32(namesSize);
    file.padTo(kStoreHeaderSize);
    file.bytes(namesBytes);
    for (const std::string& block : m_blocks)
        file.bytes(block);
    file.bytes(indexBytes);
    return file.take();
}

} // namespace sweeply::bom
